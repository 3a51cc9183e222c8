#!/usr/bin/env bash
# Runs a command beside a cluster of its own: one node, this machine, with four places for tasks. It listens on free ports
# of the loopback interface and ends with the command, which finds it by SLURM_CONF. Exits with 77 where there is no Slurm, or
# where it cannot run.
set -euo pipefail
command -v slurmctld slurmd sbatch jq >/dev/null || {
  echo "skipped: there is no Slurm with jq"
  exit 77
}
folder=$(mktemp -d)
chmod 755 "$folder"
mkdir "$folder/state" "$folder/spool"
daemons=()
stop() {
  kill "${daemons[@]}" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$folder"
}
trap stop EXIT
trap 'exit 143' TERM INT
port() {
  /usr/bin/python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}
user=$(id -un) host=$(hostname -s)
cat >"$folder/slurm.conf" <<CONF
ClusterName=test
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=$(port)
SlurmdPort=$(port)
SlurmUser=$user
SlurmdUser=$user
AuthType=auth/none
CredType=cred/none
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
ProctrackType=proctrack/linuxproc
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SlurmdParameters=config_overrides
PropagateResourceLimits=NONE
ReturnToService=2
SchedulerParameters=bf_interval=1,sched_interval=1,batch_sched_delay=0,sched_min_interval=0,kill_invalid_depend
NodeName=$host NodeAddr=127.0.0.1 CPUs=4 State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES MaxTime=10 State=UP
CONF
# slurmd looks for control groups, which containers do not show.
echo CgroupPlugin=cgroup/v1 >"$folder/cgroup.conf"
export SLURM_CONF=$folder/slurm.conf
setpriv --pdeathsig=TERM slurmctld -D -i 2>"$folder/slurmctld.log" &
daemons+=($!)
setpriv --pdeathsig=TERM slurmd -D 2>"$folder/slurmd.log" &
daemons+=($!)
for _ in $(seq 200); do
  [ "$(sinfo -h -o %t 2>/dev/null)" != idle ] || break
  sleep .1
done
[ "$(sinfo -h -o %t 2>/dev/null)" = idle ] || {
  tail -n 20 "$folder"/*.log >&2
  echo "skipped: Slurm does not run on this machine"
  exit 77
}
"$@"
