# What `cmake --install` gives other programs: the library with its headers, the windows and the one
# for data sets if they are built, a CMake package and a pkg-config file, both of which work wherever the folder is moved.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/kv_tr)

install(TARGETS kv_tr EXPORT kv_tr-targets FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT kv_tr-targets NAMESPACE kv_tr:: DESTINATION ${package_folder})
if(KV_TR_QT) # the component `qt` of the package
  install(TARGETS kv_tr_qt EXPORT kv_tr-qt-targets FILE_SET HEADERS
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  if(TARGET kv_tr_pdf) # which the windows make reports with
    install(TARGETS kv_tr_pdf EXPORT kv_tr-qt-targets)
  endif()
  install(EXPORT kv_tr-qt-targets NAMESPACE kv_tr:: DESTINATION ${package_folder})
endif()
if(TARGET kv_tr_gdal) # the component `gdal`
  install(TARGETS kv_tr_gdal EXPORT kv_tr-gdal-targets FILE_SET HEADERS
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT kv_tr-gdal-targets NAMESPACE kv_tr:: DESTINATION ${package_folder})
endif()
install(FILES cmake/kv_tr-config.cmake DESTINATION ${package_folder})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES docs/transformation.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/kv_tr)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/kv_tr-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kv_tr-config-version.cmake DESTINATION ${package_folder})

file(RELATIVE_PATH from_pkgconfig_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
     ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/kv_tr.pc.in kv_tr.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kv_tr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
