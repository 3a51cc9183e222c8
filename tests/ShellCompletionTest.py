#!/usr/bin/python3
"""Completion in bash and zsh as people use it: lines are typed in a terminal, Tab is pressed, and the line that stands
there then is compared.

usage: tests/ShellCompletionTest.py bash|zsh PROGRAM FOLDER     FOLDER: with the scripts of both shells

Exit code 77 where the shell is not installed.
"""

import json
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import sys
import tempfile
import unittest

LONGEST = 60  # seconds that a shell may take for a line

# Each shows the line in angle brackets when Ctrl-T is pressed. Ctrl-E goes to its end, Ctrl-U empties it.
SETTINGS = {
    "bash": r"""bind 'set enable-bracketed-paste off'; bind 'set bell-style none'
bind -x '"\C-t": printf "\n<%s>%s\n" "$READLINE_LINE" end'; . "$SCRIPTS/result-tables.bash"
""",
    "zsh": r"""PROMPT= RPROMPT=; unsetopt beep; fpath=("$SCRIPTS" $fpath); autoload -U compinit; compinit -u -D
show() { print -r -- "
<$BUFFER>end" }; zle -N show; bindkey -e; bindkey '^T' show; bindkey '^I' complete-word
""",
}
START = {"bash": ["bash", "--norc", "--noprofile", "-i"], "zsh": ["zsh", "-f", "-i"]}
NAMES = ["OP 10", 'Say "hi": $5 it\'s', "a:b:c d", "op=x y"]


class Shell:
    """A shell on a terminal of its own."""

    def __init__(self, name, folder, environment):
        self.seen = ""
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.execvpe(name, START[name], environment)
        self.send(SETTINGS[name] + "stty cols 1000; echo rea''dy\n")
        self.read_until("ready\r\n")

    def send(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, pattern):
        while True:
            match = re.search(pattern, self.seen, re.DOTALL)
            if match:
                self.seen = self.seen[match.end() :]
                return match
            if not select.select([self.terminal], [], [], LONGEST)[0]:
                raise AssertionError(f"expected {pattern!r}, found {self.seen!r}")
            self.seen += os.read(self.terminal, 65536).decode(errors="replace")

    def complete(self, line):
        """The line that stands there after `line` is typed; what is listed on the way is lost."""
        self.send(line + "\x14")
        completed = self.read_until("\n<([^<]*)>end\r?\n").group(1)
        self.send("\x05\x15")
        return completed

    def stop(self):
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)
        os.close(self.terminal)


class ShellCompletionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        units = [{"id": f"0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a0{i}", "name": name} for i, name in enumerate(NAMES)]
        results = {"format": "simulation-results", "version": 1, "units": units}
        (cls.folder / "my results.json").write_text(json.dumps(results))
        (cls.folder / "bin").mkdir()
        (cls.folder / "bin/result-tables").symlink_to(pathlib.Path(PROGRAM).resolve())
        environment = {
            **os.environ,
            **{"SCRIPTS": str(SCRIPTS), "PATH": f"{cls.folder}/bin:{os.environ['PATH']}", "HOME": str(cls.folder)},
            **{"PS1": "", "TERM": "dumb", "LC_ALL": "C.UTF-8", "LANGUAGE": "en", "INPUTRC": "/dev/null"},
        }
        cls.shell = Shell(SHELL, cls.folder, environment)
        cls.addClassCleanup(cls.shell.stop)

    def expect(self, typed, completed):
        """`|` is the cursor, where Tab is pressed; without one it is at the end."""
        before, _, behind = typed.partition("|")
        with self.subTest(typed=typed):
            line = before + behind + "\x02" * len(behind) + "\t"
            found = self.shell.complete(line)
            # Where what is put in ends, shells set a blank, or leave the one that is there.
            self.assertEqual(re.sub("(?<!\\\\) +", " ", found).rstrip(" "), completed)

    def test_commands_and_options(self):
        self.expect("result-tables dem", "result-tables demo")
        self.expect("result-tables limits se", "result-tables limits set")
        self.expect("result-tables x", "result-tables x")
        self.expect("result-tables check r --jo", "result-tables check r --jobs")
        self.expect("result-tables demo --un", "result-tables demo --unit")
        self.expect("./bin/result-tables dem", "./bin/result-tables demo")
        self.expect("~/bin/result-tables dem", "~/bin/result-tables demo")

    def test_values(self):
        self.expect("result-tables demo --format js", "result-tables demo --format json")
        self.expect("result-tables demo --format=js", "result-tables demo --format=json")
        self.expect("result-tables demo --family Suc", "result-tables demo --family SuctionZones")
        self.expect("result-tables limits set r --type Bol", "result-tables limits set r --type BoltNormalForce")
        self.expect("result-tables demo --no=", "result-tables demo --no=")

    def test_units(self):
        show = "result-tables show my\\ results.json --unit"
        self.expect(f"{show} OP", f"{show} OP\\ 10")
        self.expect(f"{show} OP\\ ", f"{show} OP\\ 10")
        self.expect(f"{show}=OP", f"{show}=OP\\ 10")
        self.expect(f'{show} "OP', f'{show} "OP 10"')
        self.expect(f"{show} 'OP", f"{show} 'OP 10'")
        self.expect(f"{show}=op=", f"{show}=op=x\\ y")
        self.expect(f"{show} a:b", f"{show} a:b:c\\ d")
        self.expect(f"{show} Say", f"{show} Say\\ \\\"hi\\\":\\ \\$5\\ it\\'s")
        self.expect(f'{show} "Say', f'{show} "Say \\"hi\\": \\$5 it\'s"')
        self.expect(f"{show} 'Say", f"{show} 'Say \"hi\": $5 it'\\''s'")
        self.expect(f"{show} 0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", f"{show} 0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02")
        self.expect("result-tables show ~/my\\ results.json --unit OP", "result-tables show ~/my\\ results.json --unit OP\\ 10")
        self.expect('result-tables show "my results.json" --unit OP', 'result-tables show "my results.json" --unit OP\\ 10')
        self.expect("result-tables show --unit OP| my\\ results.json", "result-tables show --unit OP\\ 10 my\\ results.json")

    def test_files(self):
        self.expect("result-tables show my", "result-tables show my\\ results.json")
        self.expect('result-tables show "my', 'result-tables show "my results.json"')
        self.expect("result-tables show --output=my", "result-tables show --output=my\\ results.json")
        self.expect("result-tables demo >my", "result-tables demo >my\\ results.json")
        self.expect("result-tables demo --jobs my", "result-tables demo --jobs my")

    def test_among_other_commands(self):
        self.expect("LANG=de result-tables dem", "LANG=de result-tables demo")
        self.expect("true && result-tables dem", "true && result-tables demo")
        self.expect("true && result-tables demo --family Bol| && true", "true && result-tables demo --family Bolts && true")


if __name__ == "__main__":
    SHELL, PROGRAM, SCRIPTS = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3]).resolve()
    if not shutil.which(SHELL):
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
