# Part of making a package: Debian's manual pages and changelogs are compressed, without a date.
file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/usr/share/man/*.[15]")
file(GLOB changes "${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/velmorant/CHANGELOG.md")
execute_process(COMMAND gzip -9n ${pages} ${changes} COMMAND_ERROR_IS_FATAL ANY)
