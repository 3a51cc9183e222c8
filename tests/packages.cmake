# What Debian packages hold besides the program and the libraries. What is not installed is skipped.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
  return()
endif()

foreach(shell IN ITEMS bash zsh)
  add_test(NAME Completion.WorksIn_${shell}
    COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/ShellCompletionTest.py
      ${shell} $<TARGET_FILE:result-tables> ${PROJECT_SOURCE_DIR}/packaging/completion)
  set_tests_properties(Completion.WorksIn_${shell} PROPERTIES SKIP_RETURN_CODE 77)
endforeach()
add_test(NAME ManualPages.AreThereForEachCommand
  COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/ManualPagesTest.py $<TARGET_FILE:result-tables>)
set_tests_properties(ManualPages.AreThereForEachCommand PROPERTIES SKIP_RETURN_CODE 77)
