# SPDX-License-Identifier: MIT
#
# What `cmake --install` puts in place: the library with its links, the headers, and the two ways
# for a consumer to find them, pkg-config and find_package(Talvane), which compute their paths from
# where they lie; the man pages, the bundled machines and what bash completes. The installed tree
# may be moved. Rooms install their own programs, and the bridge, a project of its own, its page.
include(CMakePackageConfigHelpers)

set(talvane_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/talvane)
set(talvane_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Talvane)
set(talvane_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(talvane_completion_dir ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

install(TARGETS Talvane EXPORT TalvaneTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES Talvane.h InformationRecords.h Export.h GetPciInfo.h LoadMonitor.h
  DESTINATION ${talvane_include_dir})
install(FILES
  IPMI/EventCodeTable.h
  IPMI/FRU.h
  IPMI/IPMIbase.h
  IPMI/IPMIsupport.h
  IPMI/SDR.h
  IPMI/Sensor.h
  IPMI/SensorNames.h
  IPMI/SensorRecords.h
  DESTINATION ${talvane_include_dir}/IPMI)
install(FILES
  PCI/PCIdevice.h
  PCI/PCIscan.h
  DESTINATION ${talvane_include_dir}/PCI)
install(FILES
  storage/GetAllPartitionInfo.h
  storage/GetStorageInfo.h
  storage/lltostr.h
  DESTINATION ${talvane_include_dir}/storage)
install(FILES
  SmBios/BiosDataItem.h
  SmBios/EntryPoint.h
  SmBios/LocalMemInfo.h
  SmBios/SmBios.h
  DESTINATION ${talvane_include_dir}/SmBios)

install(EXPORT TalvaneTargets NAMESPACE Talvane:: DESTINATION ${talvane_package_dir})
configure_package_config_file(cmake/TalvaneConfig.cmake.in TalvaneConfig.cmake
  INSTALL_DESTINATION ${talvane_package_dir}
  NO_SET_AND_CHECK_MACRO)
# The word size is checked by TalvaneConfig.cmake, whose message tells what to do.
write_basic_package_version_file(TalvaneConfigVersion.cmake
  COMPATIBILITY SameMajorVersion
  ARCH_INDEPENDENT)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/TalvaneConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/TalvaneConfigVersion.cmake
  DESTINATION ${talvane_package_dir})

file(RELATIVE_PATH talvane_pc_to_prefix
  ${CMAKE_INSTALL_PREFIX}/${talvane_pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/talvane.pc.in talvane.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/talvane.pc DESTINATION ${talvane_pkgconfig_dir})

install(FILES docs/man/talvane.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)
if(TALVANE_BUILD_SIMULATOR)
  install(FILES docs/man/talvane-sim.1 docs/man/talvane-host.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES docs/man/talvane-machine.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
  install(DIRECTORY machines DESTINATION ${CMAKE_INSTALL_DATADIR}/talvane)
  foreach(launcher talvane-sim talvane-host)
    install(FILES simulator/completion.bash RENAME ${launcher} DESTINATION ${talvane_completion_dir})
  endforeach()
endif()
if(TALVANE_BUILD_TOOLS)
  install(FILES docs/man/talvane.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES tools/completion.bash RENAME talvane DESTINATION ${talvane_completion_dir})
endif()
