# Installs the built project into a clean folder and builds the example host against that copy,
# once with the CMake package and once with pkg-config; the Python package is imported from there.
# Run as a script, with BUILD (the build tree), EXAMPLE (the host's folder), COMPILER, FLAGS,
# BUILD_TYPE, QT (whether there are windows, for which EXAMPLE_qt is the host), GDAL (likewise data
# sets and EXAMPLE_gdal) and PYTHON (the interpreter, if the package was built for one it can load).

cmake_minimum_required(VERSION 3.25)

# run(COMMAND...): stops the test when the command fails; what it printed is in `output`.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE text
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\n${text}")
  endif()
  set(output "${text}" PARENT_SCOPE)
endfunction()

# check_host(PROGRAM): fits, leaves a point out, transforms and saves, as its source says.
function(check_host program)
  file(REMOVE ${folder}/town.trp ${folder}/log.txt)
  run(${program} ${folder}/town.trp ${folder}/log.txt)
  foreach(expected "rms 0.032 m" "87.118 +-1.009 +0.008  left out"
                   "a point    595576.108 252298.293"
                   "saving: [^\n]*town.trp")
    if(NOT output MATCHES "${expected}")
      message(FATAL_ERROR "The host should have printed ${expected}:\n${output}")
    endif()
  endforeach()
  file(STRINGS ${folder}/town.trp parameters)
  list(LENGTH parameters count)
  if(NOT count EQUAL 6 OR NOT EXISTS ${folder}/log.txt)
    message(FATAL_ERROR "The host should have saved six parameters and a log:\n${parameters}")
  endif()
endfunction()

# check_host_fails(PROGRAM): where its files or what it prints cannot be written, as it should.
function(check_host_fails program)
  foreach(case "none/town.trp;log.txt;printed.txt" "town.trp;none/log.txt;printed.txt"
               "/dev/full;log.txt;printed.txt" "town.trp;log.txt;/dev/full")
    list(TRANSFORM case PREPEND ${folder}/ REGEX "^[^/]")
    list(POP_BACK case printed)
    execute_process(COMMAND ${program} ${case} RESULT_VARIABLE result OUTPUT_FILE ${printed}
                    ERROR_QUIET)
    if(NOT result EQUAL 1)
      message(FATAL_ERROR "The host should have failed with ${case} printing to ${printed}")
    endif()
  endforeach()
endfunction()

# Every header that an installed one includes is installed too.
function(check_headers include)
  file(GLOB_RECURSE headers RELATIVE ${include} ${include}/*.h)
  if(NOT "kv_tr/published/clsTr.h" IN_LIST headers)
    message(FATAL_ERROR "No headers in ${include}")
  endif()
  foreach(header IN LISTS headers)
    file(STRINGS ${include}/${header} lines REGEX "^#include \"")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "#include \"(.*)\".*" "\\1" included "${line}")
      if(NOT included IN_LIST headers)
        message(FATAL_ERROR "${header} includes ${included}, which is not installed")
      endif()
    endforeach()
  endforeach()
endfunction()

set(folder ${BUILD}/installed_host)
set(prefix ${folder}/moved) # not where the install thought it would be
file(REMOVE_RECURSE ${folder})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${folder}/prefix)
file(RENAME ${folder}/prefix ${prefix})
check_headers(${prefix}/include)
if(NOT EXISTS ${prefix}/share/doc/kv_tr/LICENSE)
  message(FATAL_ERROR "The licence is not installed")
endif()

# build_host(SOURCE NAME): in folder/NAME, with the CMake package.
function(build_host source name)
  run(${CMAKE_COMMAND} -S ${source} -B ${folder}/${name} -G Ninja -DCMAKE_PREFIX_PATH=${prefix}
      -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_BUILD_TYPE=${BUILD_TYPE})
  run(${CMAKE_COMMAND} --build ${folder}/${name})
endfunction()

build_host(${EXAMPLE} build)
check_host(${folder}/build/host)
check_host_fails(${folder}/build/host)
if(QT)
  build_host(${EXAMPLE}_qt build_qt)
endif()

if(GDAL)
  build_host(${EXAMPLE}_gdal build_gdal)
  run(${folder}/build_gdal/host_gdal ${EXAMPLE}/../parcels.gpkg ${folder}/moved.gpkg)
  if(NOT output MATCHES "3 layers, 8 features" OR NOT EXISTS ${folder}/moved.gpkg)
    message(FATAL_ERROR "The host should have moved layers:\n${output}")
  endif()
endif()

find_program(pkg_config pkg-config)
if(pkg_config)
  file(GLOB_RECURSE description ${prefix}/*/kv_tr.pc)
  get_filename_component(description ${description} DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} ${description})
  run(${pkg_config} --cflags --libs kv_tr)
  separate_arguments(FLAGS)
  separate_arguments(output)
  run(${COMPILER} ${FLAGS} ${EXAMPLE}/main.cpp -o ${folder}/host ${output}
      -Wl,-rpath,${description}/..)
  check_host(${folder}/host)
endif()

if(PYTHON)
  file(GLOB package ${prefix}/lib/python3*/*-packages)
  run(${CMAKE_COMMAND} -E env PYTHONPATH=${package} ${PYTHON} -c
      "import kv_tr; assert kv_tr.__file__.startswith('${prefix}'), kv_tr.__file__")
endif()
