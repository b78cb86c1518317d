# Runs EXAMPLE.edit with PROGRAM and compares what it prints with EXAMPLE.expected; -DUPDATE=ON writes that file instead.
# How far the solver came down below what counts as nothing depends on the machine.
cmake_minimum_required(VERSION 3.20)
execute_process(COMMAND "${PROGRAM}" run "${EXAMPLE}.edit"
  OUTPUT_VARIABLE output ERROR_VARIABLE complaint RESULT_VARIABLE code)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "${EXAMPLE}.edit was refused with exit code ${code}: ${complaint}")
endif()
string(REGEX REPLACE "residual (0|[0-9.]+e-(09|[1-9][0-9]+))" "residual below 1e-08" output "${output}")
if(UPDATE)
  file(WRITE "${EXAMPLE}.expected" "${output}")
  return()
endif()
file(READ "${EXAMPLE}.expected" expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${EXAMPLE}.edit printed\n${output}\ninstead of\n${expected}")
endif()
