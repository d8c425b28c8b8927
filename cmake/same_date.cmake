# Run by CPack before it packs: everything has the date of the commit, so that the same sources give
# the same archive.
execute_process(COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY} -exec
  touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} + COMMAND_ERROR_IS_FATAL ANY)
