# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Runs an example and compares its output with a file:
#
#     cmake -DPROGRAM=... -DARGUMENTS=... -DEXPECTED=... -DDIRECTORY=... -P CompareOutput.cmake
#
# DIRECTORY is the working directory. The file "lines.txt" is created there, which some examples read.

file(MAKE_DIRECTORY "${DIRECTORY}")
string(REPEAT "one line of the example\n" 7000 lines)
file(WRITE "${DIRECTORY}/lines.txt" "${lines}")
execute_process(COMMAND "${PROGRAM}" ${ARGUMENTS} WORKING_DIRECTORY "${DIRECTORY}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
file(READ "${EXPECTED}" expected)
if(NOT result EQUAL 0 OR NOT output STREQUAL expected OR NOT errors STREQUAL "")
    message(FATAL_ERROR "status ${result}, output:\n${output}${errors}expected:\n${expected}")
endif()
