# What the shells complete is what `--help` says: its lines are read where they are written, so that
# no second list can fall behind.
#
# A line with two blanks and an option begins an entry; its words stand behind it, or on the lines
# that are indented further.
set(help_source "${PROJECT_SOURCE_DIR}/src/app/CommandLine.cpp")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${help_source}")
file(READ "${help_source}" source)
if(NOT source MATCHES "R\"\\((Usage: [^\"]*)\\)\"")
  message(FATAL_ERROR "There is no help text in ${help_source}.")
endif()
# A semicolon would part a list.
string(REPLACE ";" ":" help "${CMAKE_MATCH_1}")
string(REPLACE "\n" ";" help "${help}")

set(completed_options)
set(entry)
macro(end_entry)
  string(STRIP "${words}" words)
  foreach(option ${entry})
    list(APPEND completed_options "${option}")
    set(words_of${option} "${words}")
  endforeach()
  set(entry)
  set(words)
endmacro()
foreach(line IN LISTS help)
  if(line MATCHES "^  (--[a-z0-9=A-Z-]+(, --[a-z0-9-]+)*)(  +(.*))?$")
    set(found "${CMAKE_MATCH_1}")
    set(found_words "${CMAKE_MATCH_4}")
    end_entry()
    string(REPLACE ", " ";" entry "${found}")
    set(words "${found_words}")
  elseif(entry AND line MATCHES "^    +(.*)$")
    string(APPEND words " ${CMAKE_MATCH_1}")
  else()
    end_entry()
  endif()
endforeach()
end_entry()

set(bash_words)
set(zsh_entries)
set(fish_entries)
foreach(option ${completed_options})
  set(words "${words_of${option}}")
  string(REGEX REPLACE "=.*" "" name "${option}")
  string(REGEX REPLACE "^--" "" long "${name}")
  string(REPLACE "'" "’" words "${words}")
  if(option MATCHES "=")
    list(APPEND bash_words "${name}=")
    string(APPEND zsh_entries "  '(-)${name}=[${words}]:application: '\n")
    string(APPEND fish_entries "complete -c vantorel -n __vantorel_alone -x -l ${long} -d '${words}'\n")
  else()
    list(APPEND bash_words "${name}")
    string(APPEND zsh_entries "  '(-)${name}[${words}]'\n")
    string(APPEND fish_entries "complete -c vantorel -n __vantorel_alone -l ${long} -d '${words}'\n")
  endif()
endforeach()
list(JOIN bash_words " " bash_words)

file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/completions/vantorel" @ONLY CONTENT
[==[# Completion of vantorel's options for bash. One command is given at a time.
_vantorel() {
  COMPREPLY=()
  [ "$COMP_CWORD" -eq 1 ] || return 0
  mapfile -t COMPREPLY < <(compgen -W '@bash_words@' -- "${COMP_WORDS[1]}")
  # Behind an equals sign comes an argument, not the next word.
  if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} = *= ]]; then compopt -o nospace; fi
}
complete -F _vantorel vantorel
]==])
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/completions/_vantorel" @ONLY CONTENT
[==[#compdef vantorel
# Completion of vantorel's options for zsh. One command is given at a time.
local -a entries=(
@zsh_entries@)
_arguments -S $entries
]==])
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/completions/vantorel.fish" @ONLY CONTENT
[==[# Completion of vantorel's options for fish. One command is given at a time.
function __vantorel_alone
    test (count (commandline -opc)) -eq 1
end
complete -c vantorel -f
@fish_entries@]==])

set(VANTOREL_ZSH_COMPLETIONS "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" CACHE STRING
  "Where zsh of this distribution looks for completions")
install(FILES "${PROJECT_BINARY_DIR}/completions/vantorel"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install(FILES "${PROJECT_BINARY_DIR}/completions/_vantorel"
  DESTINATION "${VANTOREL_ZSH_COMPLETIONS}")
install(FILES "${PROJECT_BINARY_DIR}/completions/vantorel.fish"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
