# Part of making a package: Debian's manual pages and changelogs are compressed, without a date.
set(usr ${CPACK_TEMPORARY_DIRECTORY}/usr)
file(RENAME ${usr}/share/doc/velmorant/CHANGELOG.md ${usr}/share/doc/velmorant/changelog)
file(GLOB pages ${usr}/share/man/man*/*)
execute_process(COMMAND gzip -9n ${pages} ${usr}/share/doc/velmorant/changelog
                COMMAND_ERROR_IS_FATAL ANY)
