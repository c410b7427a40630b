# Assembles one profile in the data directory: run with -P and
#   PROFILE_SOURCE  the profile's source folder
#   PROFILE_STAGE   <data dir>/profiles/<name>, replaced as a whole
#   FILES           files relative to PROFILE_SOURCE, separated by '|'
#   DIRECTORIES     empty directories to create, separated by '|'
#   CATALOGUE_DIR   compiled catalogue: <lang>/Tizen_Orvo.mo
#   LANGUAGES       languages, separated by '|'
string(REPLACE "|" ";" files "${FILES}")
string(REPLACE "|" ";" directories "${DIRECTORIES}")
string(REPLACE "|" ";" languages "${LANGUAGES}")

file(REMOVE_RECURSE "${PROFILE_STAGE}")
foreach(file IN LISTS files)
  get_filename_component(dir "${PROFILE_STAGE}/${file}" DIRECTORY)
  file(COPY "${PROFILE_SOURCE}/${file}" DESTINATION "${dir}")
endforeach()
foreach(dir IN LISTS directories)
  file(MAKE_DIRECTORY "${PROFILE_STAGE}/${dir}")
endforeach()
foreach(lang IN LISTS languages)
  file(COPY "${CATALOGUE_DIR}/${lang}/Tizen_Orvo.mo"
       DESTINATION "${PROFILE_STAGE}/rootfs/usr/share/orvotv/res/locale/${lang}/LC_MESSAGES")
endforeach()
