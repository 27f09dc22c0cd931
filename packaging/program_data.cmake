# Installs the program's data files: every regular file the build put into the program's
# folder that is neither a program nor something a run leaves behind. The programs are
# installed as targets; port links (COMN), recovery and setup files, printed forms and
# logs belong to whoever ran the program there, not to the package. New data files (help
# files, pictures) are picked up as the build starts to make them.
#
# Runs at install time with DPM_PROGRAM_DIR and DPM_INSTALL_FOLDER set.
file(GLOB candidates LIST_DIRECTORIES false "${DPM_PROGRAM_DIR}/*")
set(data_files)
foreach(file ${candidates})
  get_filename_component(name "${file}" NAME)
  if(IS_SYMLINK "${file}" OR name MATCHES "^COM[0-9]+$" OR name MATCHES "\\.(DPM|pdf|log|tmp)$" OR name MATCHES "^\\.")
    continue()
  endif()
  # Programs carry the execute bit; data files do not.
  execute_process(COMMAND test -x "${file}" RESULT_VARIABLE not_executable)
  if(not_executable)
    list(APPEND data_files "${file}")
  endif()
endforeach()
if(NOT data_files)
  message(FATAL_ERROR "No data files in ${DPM_PROGRAM_DIR}: build the program first")
endif()
file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${DPM_INSTALL_FOLDER}" TYPE FILE FILES ${data_files})
