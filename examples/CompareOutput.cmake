# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Runs an example and compares what it prints, and what it leaves in the files FILES, with a file:
#
#     cmake -DPROGRAM=... -DARGUMENTS=... -DFILES=... -DEXPECTED=... -DDIRECTORY=... -P CompareOutput.cmake
#
# DIRECTORY is the working directory. Some examples read the file "lines.txt", which is created there. Times and thread
# numbers are replaced by <time> and <thread>.

file(REMOVE_RECURSE "${DIRECTORY}")
file(MAKE_DIRECTORY "${DIRECTORY}")
string(REPEAT "one line of the example\n" 7000 lines)
file(WRITE "${DIRECTORY}/lines.txt" "${lines}")
execute_process(COMMAND "${PROGRAM}" ${ARGUMENTS} WORKING_DIRECTORY "${DIRECTORY}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
foreach(name IN LISTS FILES)
    file(READ "${DIRECTORY}/${name}" content)
    string(APPEND output "== ${name}\n${content}")
endforeach()
set(digit "[0-9]")
set(two "${digit}${digit}")
string(REGEX REPLACE "20${two}-${two}-${two}T${two}:${two}:${two}[.]${two}${digit}" "<time>" output "${output}")
string(REGEX REPLACE "Thread\\[[0-9a-f]+\\]" "Thread[<thread>]" output "${output}")
file(READ "${EXPECTED}" expected)
if(NOT result EQUAL 0 OR NOT output STREQUAL expected OR NOT errors STREQUAL "")
    message(FATAL_ERROR "status ${result}, output:\n${output}${errors}expected:\n${expected}")
endif()
