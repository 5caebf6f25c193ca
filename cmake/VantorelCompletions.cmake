# SPDX-License-Identifier: MIT
# What the shells complete is what `--help` says: its lines are read where they are written, so that
# no second list can fall behind.
#
# A line with two blanks and an option begins an entry; its words stand behind it, or on the lines
# that are indented further. So does one with two blanks and a verb, whose own options stand in
# brackets behind it.
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
set(completed_verbs)
set(entry)
macro(end_entry)
  string(STRIP "${words}" words)
  foreach(name ${entry})
    if(name MATCHES "^--")
      list(APPEND completed_options "${name}")
    else()
      list(APPEND completed_verbs "${name}")
    endif()
    set(words_of${name} "${words}")
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
  elseif(line MATCHES "^  ([a-z]+)(( [^ ]+)*)(  +(.*))?$")
    set(found "${CMAKE_MATCH_1}")
    set(found_arguments "${CMAKE_MATCH_2}")
    set(found_words "${CMAKE_MATCH_5}")
    end_entry()
    set(entry "${found}")
    set(words "${found_words}")
    string(REGEX MATCHALL "--[a-z-]+" options_of_${found} "${found_arguments}")
    set(takes_directory_${found} NO)
    if(found_arguments MATCHES " DIR$")
      set(takes_directory_${found} YES)
    endif()
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
set(bash_verbs)
set(zsh_verbs)
set(zsh_arguments)
foreach(verb ${completed_verbs})
  list(APPEND bash_words "${verb}")
  string(REPLACE "'" "’" words "${words_of${verb}}")
  string(REPLACE ":" " -" zsh_words "${words}")
  string(APPEND zsh_verbs "  '${verb}:${zsh_words}'\n")
  string(APPEND fish_entries "complete -c vantorel -n __vantorel_alone -a ${verb} -d '${words}'\n")
  list(JOIN options_of_${verb} " " offered)
  set(directories)
  set(zsh_operand "*: : ")
  if(takes_directory_${verb})
    set(directories "-d ")
    set(zsh_operand "*:directory:_directories")
    string(APPEND fish_entries
      "complete -c vantorel -n '__vantorel_verb ${verb}' -a '(__fish_complete_directories)'\n")
  endif()
  string(APPEND bash_verbs "    ${verb}) offered=(${directories}-W '${offered}') ;;\n")
  string(APPEND zsh_arguments "    ${verb}) _arguments -S ${offered} '${zsh_operand}' ;;\n")
  foreach(option ${options_of_${verb}})
    string(REGEX REPLACE "^--" "" long "${option}")
    string(APPEND fish_entries "complete -c vantorel -n '__vantorel_verb ${verb}' -l ${long}\n")
  endforeach()
endforeach()
list(JOIN bash_words " " bash_words)

file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/completions/vantorel" @ONLY CONTENT
[==[# Completion of vantorel's commands for bash. One is given at a time.
_vantorel() {
  local offered=(-W '@bash_words@')
  COMPREPLY=()
  [ "$COMP_CWORD" -eq 1 ] || case ${COMP_WORDS[1]} in
@bash_verbs@    *) return 0 ;;
  esac
  mapfile -t COMPREPLY < <(compgen "${offered[@]}" -- "${COMP_WORDS[COMP_CWORD]}")
  # Behind an equals sign comes an argument, not the next word.
  if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} = *= ]]; then compopt -o nospace; fi
  [[ ${offered[0]} != -d ]] || compopt -o filenames
}
complete -F _vantorel vantorel
]==])
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/completions/_vantorel" @ONLY CONTENT
[==[#compdef vantorel
# Completion of vantorel's commands for zsh. One is given at a time.
local -a entries=(
@zsh_entries@)
local -a verbs=(
@zsh_verbs@)
if (( CURRENT == 2 )); then
  _describe -t commands command verbs
  _arguments -S $entries
else
  local verb=$words[2]
  shift words
  (( CURRENT-- ))
  case $verb in
@zsh_arguments@  esac
fi
]==])
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/completions/vantorel.fish" @ONLY CONTENT
[==[# Completion of vantorel's commands for fish. One is given at a time.
function __vantorel_alone
    test (count (commandline -opc)) -eq 1
end
function __vantorel_verb
    set -l words (commandline -opc)
    test (count $words) -gt 1; and test "$words[2]" = "$argv[1]"
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
