# Studies as people and clusters use them: in a file, on a PostgreSQL server and on a Slurm cluster that a test starts for
# itself. What is not installed is skipped.
set(with_server ${CMAKE_CURRENT_SOURCE_DIR}/support/with-postgresql.sh)
set(with_cluster ${CMAKE_CURRENT_SOURCE_DIR}/support/with-slurm.sh)

# SCRIPT with ARGUMENTS, behind what it runs BESIDE. ALONE: nothing else runs at the same time.
function(add_study_test name script)
  cmake_parse_arguments(PARSE_ARGV 2 arg "ALONE" "TIMEOUT" "BESIDE;ARGUMENTS;ENVIRONMENT")
  add_test(NAME Study.${name}
    COMMAND ${arg_BESIDE} /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/${script} ${arg_ARGUMENTS})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set_tests_properties(Study.${name} PROPERTIES
    RUN_SERIAL ${arg_ALONE} SKIP_RETURN_CODE 77 TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "KESTREL_PROGRAM=$<TARGET_FILE:result-tables>;${arg_ENVIRONMENT}")
  if(arg_BESIDE)
    set_tests_properties(Study.${name} PROPERTIES LABELS real)
  endif()
endfunction()

set(program $<TARGET_FILE:result-tables>)
add_study_test(SqlStandsInTheSources StudySourcesTest.py)
add_study_test(QueriesAnswerInAFile StudyQueriesTest.py)
add_study_test(CompareSaysWhatDiffSaysInAFile StudyCompareTest.py ARGUMENTS ${program} runs.study)
add_study_test(WorstListsWhatFilesHoldInAFile StudyWorstTest.py ARGUMENTS ${program} runs.study)
add_study_test(TrendShowsWhatFilesHoldInAFile StudyTrendTest.py ARGUMENTS ${program} runs.study)
add_study_test(FileKeepsEachBit StudyBitsTest.py)
add_study_test(ForeignAndDamagedFilesStay StudySafetyTest.py TIMEOUT 600)

# Sanitizers have seen the program in a file; servers, clusters and many processes take long with them.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
  return()
endif()
add_study_test(ProcessesUseOneFile StudyProcessesTest.py ALONE)
add_study_test(ProcessesUseOneServer StudyProcessesTest.py
  ALONE TIMEOUT 600 BESIDE ${with_server} ENVIRONMENT STUDY_KIND=server)
add_study_test(ServerEndsInTheMiddle StudyServerTest.py ALONE TIMEOUT 600 BESIDE ${with_server})
add_study_test(QueriesAnswerOnAServer StudyQueriesTest.py BESIDE ${with_server})
add_study_test(ServerKeepsEachBit StudyBitsTest.py BESIDE ${with_server} ENVIRONMENT STUDY_KIND=server)
add_study_test(CompareSaysWhatDiffSaysOnAServer StudyCompareTest.py
  BESIDE ${with_server} ARGUMENTS ${program} postgresql:///)
add_study_test(WorstListsWhatFilesHoldOnAServer StudyWorstTest.py
  BESIDE ${with_server} ARGUMENTS ${program} postgresql:///)
add_study_test(TrendShowsWhatFilesHoldOnAServer StudyTrendTest.py
  BESIDE ${with_server} ARGUMENTS ${program} postgresql:///)
add_study_test(JobArrayFillsOneFile StudySlurmTest.py ALONE BESIDE ${with_cluster})
add_study_test(JobArrayFillsOneServer StudySlurmTest.py
  ALONE BESIDE ${with_server} ${with_cluster} ENVIRONMENT STUDY_KIND=server)
