# Copies every file below SRC to the same place below DST unless DST already
# has a file there: data in the build folder may hold the user's edits.
file(GLOB_RECURSE files RELATIVE "${SRC}" "${SRC}/*")
foreach(f IN LISTS files)
  if(NOT EXISTS "${DST}/${f}")
    get_filename_component(dir "${DST}/${f}" DIRECTORY)
    file(MAKE_DIRECTORY "${dir}")
    file(COPY "${SRC}/${f}" DESTINATION "${dir}")
  endif()
endforeach()
