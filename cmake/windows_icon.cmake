# Sets kv_tr_icon: the icon of programs, drawn anew in each size that Windows shows.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(IMAGEMAGICK_CONVERT convert REQUIRED)

set(kv_tr_icon ${PROJECT_BINARY_DIR}/kv_tr.ico)
set(drawing ${PROJECT_SOURCE_DIR}/app/desktop/kv_tr.svg)
set(draw)
set(pictures)
foreach(size 16 20 24 32 40 48 64 128 256)
  set(picture ${PROJECT_BINARY_DIR}/kv_tr_${size}.png)
  list(APPEND draw COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} --output ${picture} ${drawing})
  list(APPEND pictures ${picture})
endforeach()
add_custom_command(
  OUTPUT ${kv_tr_icon}
  ${draw}
  COMMAND ${IMAGEMAGICK_CONVERT} ${pictures} ${kv_tr_icon}
  DEPENDS ${drawing}
  COMMENT "Drawing kv_tr.ico"
  VERBATIM)
