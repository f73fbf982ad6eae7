# What programs for Windows carry beside their code: icon, version, manifest.
enable_language(RC)
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(IMAGEMAGICK_CONVERT convert REQUIRED)

# The icon of all programs, drawn anew in each size that the system shows.
set(kv_tr_icon ${PROJECT_BINARY_DIR}/kv_tr.ico)
set(kv_tr_drawing ${PROJECT_SOURCE_DIR}/app/desktop/kv_tr.svg)
set(draw_icon)
set(icon_pictures)
foreach(size 16 20 24 32 40 48 64 128 256)
  set(picture ${PROJECT_BINARY_DIR}/kv_tr_${size}.png)
  list(APPEND draw_icon COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} --output ${picture} ${kv_tr_drawing})
  list(APPEND icon_pictures ${picture})
endforeach()
add_custom_command(
  OUTPUT ${kv_tr_icon}
  ${draw_icon}
  COMMAND ${IMAGEMAGICK_CONVERT} ${icon_pictures} ${kv_tr_icon}
  DEPENDS ${kv_tr_drawing}
  COMMENT "Drawing kv_tr.ico"
  VERBATIM)

# kv_tr_windows_program(TARGET DESCRIPTION): gives a program icon, version and manifest.
function(kv_tr_windows_program target description)
  get_target_property(name ${target} OUTPUT_NAME)
  if(NOT name)
    set(name ${target})
  endif()
  string(REPLACE . , numbers ${PROJECT_VERSION},0)
  set(version ${PROJECT_VERSION})
  set(icon ${kv_tr_icon})
  set(manifest ${PROJECT_SOURCE_DIR}/cmake/windows_program.manifest)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/windows_program.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource} ${icon})
  set_source_files_properties(${resource} PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
endfunction()
