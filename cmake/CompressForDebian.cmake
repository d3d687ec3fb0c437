# Part of making a package: what Debian wants of manual pages and changelogs.
set(usr ${CPACK_TEMPORARY_DIRECTORY}/usr)
set(doc ${usr}/share/doc/velmorant)
file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${doc}/changelog.Debian "velmorant (${CPACK_PACKAGE_VERSION}-1) unstable; urgency=medium

  * Made by the package's own scripts; changelog.gz says what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
file(GLOB texts ${usr}/share/man/man*/* ${doc}/changelog*)
execute_process(COMMAND gzip -9n ${texts} COMMAND_ERROR_IS_FATAL ANY)
