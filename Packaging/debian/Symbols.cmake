# Run by cpack before it makes the packages: makes the symbols file of the libraries' package, and stops where the libraries
# offer other symbols than it lists.
execute_process(COMMAND ${CPACK_LINEUP_SYMBOLS} COMMAND_ERROR_IS_FATAL ANY)
