#Lets the tool at TOOL write its page of the kind KIND to the file PAGE.

execute_process(COMMAND ${TOOL} generate ${KIND} OUTPUT_FILE ${PAGE} COMMAND_ERROR_IS_FATAL ANY)
