# Run by cpack when the packages are made: puts the list of what they are made of beside them, and the sums of all.
set(materials ${CPACK_PACKAGE_DIRECTORY}/lineup_${CPACK_PACKAGE_VERSION}.spdx.json)
execute_process(
    COMMAND ${CPACK_LINEUP_PYTHON} -B ${CPACK_LINEUP_MATERIALS} --build ${CPACK_LINEUP_BUILD} --out ${materials}
        ${CPACK_PACKAGE_FILES}
    COMMAND_ERROR_IS_FATAL ANY)
set(sums)
foreach(file IN LISTS CPACK_PACKAGE_FILES ITEMS ${materials})
    file(SHA256 ${file} sum)
    get_filename_component(name ${file} NAME)
    list(APPEND sums "${sum}  ${name}")
endforeach()
list(JOIN sums "\n" sums)
file(WRITE ${CPACK_PACKAGE_DIRECTORY}/SHA256SUMS "${sums}\n")
