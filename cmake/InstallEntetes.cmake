# Installs the public headers: prefa.h and every header it includes, directly or
# through another one. Headers that only the library's sources share (GeometrieInterne.h
# and the like) are reached by no public header and stay out. The walk runs at install
# time, so the installed set follows the sources without a list to keep.
# Expects PREFA_SOURCE_DIR and PREFA_INCLUDE_DEST (relative to the prefix).
set(_a_voir prefa.h)
set(_vus)
while(_a_voir)
  list(POP_FRONT _a_voir _entete)
  list(FIND _vus "${_entete}" _deja)
  if(NOT _deja EQUAL -1)
    continue()
  endif()
  list(APPEND _vus ${_entete})
  get_filename_component(_dossier "${_entete}" DIRECTORY)
  file(STRINGS "${PREFA_SOURCE_DIR}/${_entete}" _lignes REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
  foreach(_ligne IN LISTS _lignes)
    string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]+)\".*" "\\1" _inclus "${_ligne}")
    # As the compiler looks: beside the including header first, then from the root.
    if(_dossier AND EXISTS "${PREFA_SOURCE_DIR}/${_dossier}/${_inclus}")
      list(APPEND _a_voir "${_dossier}/${_inclus}")
    elseif(EXISTS "${PREFA_SOURCE_DIR}/${_inclus}")
      list(APPEND _a_voir "${_inclus}")
    endif()
  endforeach()
endwhile()
foreach(_entete IN LISTS _vus)
  get_filename_component(_dossier "${CMAKE_INSTALL_PREFIX}/${PREFA_INCLUDE_DEST}/${_entete}" DIRECTORY)
  file(INSTALL DESTINATION "${_dossier}" TYPE FILE FILES "${PREFA_SOURCE_DIR}/${_entete}")
endforeach()
