# SPDX-License-Identifier: GPL-3.0-or-later
# Where each program is installed, and what a shell reads of it: its manual page and its completions.
include(GNUInstallDirs)
set(CVTAMBER_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "Where zsh looks for completions, below the prefix")

foreach(program IN ITEMS corvane corvane-simulator cvtamber)
    if(TARGET ${program})
        set(completions ${PROJECT_SOURCE_DIR}/data/completions/${program})
        install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
        install(FILES ${PROJECT_SOURCE_DIR}/docs/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
        install(FILES ${completions}.bash
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program})
        install(FILES ${completions}.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
        install(FILES ${completions}.zsh DESTINATION ${CVTAMBER_ZSH_COMPLETIONS} RENAME _${program})
    endif()
endforeach()
