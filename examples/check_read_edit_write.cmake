# Runs PROGRAM, before which an emulator may stand, on a copy of DOCUMENT in FOLDER, and compares what it prints and what it leaves in the file.

file(REMOVE_RECURSE ${FOLDER})
file(COPY ${DOCUMENT} DESTINATION ${FOLDER})
execute_process(COMMAND ${PROGRAM} lamp.bkd WORKING_DIRECTORY ${FOLDER}
    OUTPUT_VARIABLE printed RESULT_VARIABLE result)
if(NOT result STREQUAL "0")
    message(FATAL_ERROR "the program ended with ${result}")
endif()
string(REPLACE "\r\n" "\n" printed "${printed}")
set(expected "name: 1 value(s)\nlit: 1 value(s)\npower: 1 value(s)\nshade: 1 value(s)\n")
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "printed:\n${printed}\nexpected:\n${expected}")
endif()

file(READ ${DOCUMENT} expected)
file(READ ${FOLDER}/lamp.bkd written)
string(REPLACE "\r\n" "\n" written "${written}")
# The header line is followed by an empty one, and the last line has no end.
string(REPLACE "1.2\n" "1.2\n\n" expected "${expected}")
string(REPLACE "power 40.0" "power 80.0" expected "${expected}")
string(REGEX REPLACE "\n$" "" expected "${expected}")
if(NOT written STREQUAL expected)
    message(FATAL_ERROR "written:\n${written}\nexpected:\n${expected}")
endif()
