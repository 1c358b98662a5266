# Run by cpack before it makes the packages: everybody may enter the folders in them, whatever the umask of whoever
# makes them. An installation creates folders under that.
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -type d -exec chmod u=rwx,go=rx {} + COMMAND_ERROR_IS_FATAL ANY)
