# Runs PROGRAM in FOLDER, and compares its output and the files that it leaves with EXPECTED. An emulator may come
# before PROGRAM.

file(REMOVE_RECURSE ${FOLDER})
file(COPY ${EXAMPLES}/lamp.bkd ${EXAMPLES}/project DESTINATION ${FOLDER})
execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE printed RESULT_VARIABLE result)
if(NOT result STREQUAL "0")
    message(FATAL_ERROR "the program ended with ${result}, after\n${printed}")
endif()

# expect <what> <text> <file that it must be>
function(expect what text file)
    string(REPLACE "\r\n" "\n" text "${text}")
    file(READ ${file} expected)
    if(NOT text STREQUAL expected)
        message(FATAL_ERROR "${what}:\n${text}\nexpected:\n${expected}")
    endif()
endfunction()

expect(printed "${printed}" ${EXPECTED}/${NAME}.txt)
if(EXISTS ${EXPECTED}/${NAME}.bkd)
    file(READ ${FOLDER}/lamp.bkd left)
    expect("left in lamp.bkd" "${left}" ${EXPECTED}/${NAME}.bkd)
endif()
