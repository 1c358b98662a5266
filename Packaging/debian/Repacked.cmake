# Run by cpack when the packages are made: packs them anew, as dpkg-deb does it. cpack gives the members of a package the
# umask of whoever makes it, and a package with a library scripts that call ldconfig; the trigger does that, once for all
# packages that are installed together.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(folder ${CPACK_TEMPORARY_DIRECTORY}/repacked)
    file(REMOVE_RECURSE ${folder})
    execute_process(COMMAND sh -c "umask 022 && exec dpkg-deb --raw-extract ${package} ${folder}"
        COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE ${folder}/DEBIAN/postinst ${folder}/DEBIAN/postrm)
    execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${folder} ${package}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
