# cmake -D BUILD=folder -D FIRST=folder -D MOVED=folder -P InstallAndMove.cmake: installs into one folder and moves what
# is there to another.
file(REMOVE_RECURSE ${FIRST} ${MOVED})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FIRST} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET MOVED PARENT_PATH folder)
file(MAKE_DIRECTORY ${folder})
file(RENAME ${FIRST} ${MOVED})
