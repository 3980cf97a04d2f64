# Makes the man page and the bash completion of the runner from the
# runner's own --help texts, so that neither can drift from the options.
#   cmake -DRUNNER=path/to/kdvq-upgrade -DMAN_PAGE=out.1 -DCOMPLETION=out.bash -P help_pages.cmake
execute_process(COMMAND ${RUNNER} --help OUTPUT_VARIABLE main_help COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${RUNNER} --version OUTPUT_VARIABLE version_text COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${version_text}" version_text)

# The subcommands: the first word of each line after "Subcommands:".
string(REGEX REPLACE ".*\nSubcommands:\n" "" subcommand_lines "${main_help}")
string(REGEX MATCHALL "\n  [a-z]+ " subcommand_words "\n${subcommand_lines}")
set(subcommands "")
foreach(word IN LISTS subcommand_words)
  string(STRIP "${word}" word)
  list(APPEND subcommands "${word}")
endforeach()

# Roff: backslashes and minus signs escaped, a line starting with a dot
# or an apostrophe protected.
function(to_roff text out)
  string(REPLACE "\\" "\\e" text "${text}")
  string(REPLACE "-" "\\-" text "${text}")
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

string(TIMESTAMP today "%Y-%m-%d" UTC)
to_roff("${main_help}" main_roff)
set(man ".TH KDVQ-UPGRADE 1 \"${today}\" \"${version_text}\" \"User Commands\"\n")
string(APPEND man ".SH NAME\nkdvq\\-upgrade \\- upgrade the repository database of the workflow framework\n")
string(APPEND man ".SH SYNOPSIS\n.B kdvq\\-upgrade\n.I SUBCOMMAND\n[\\fIOPTIONS\\fR]\n")
string(APPEND man ".SH DESCRIPTION\n.nf\n${main_roff}.fi\n.SH SUBCOMMANDS\n")
set(completion_cases "")
foreach(sub IN LISTS subcommands)
  execute_process(COMMAND ${RUNNER} ${sub} --help OUTPUT_VARIABLE sub_help COMMAND_ERROR_IS_FATAL ANY)
  to_roff("${sub_help}" sub_roff)
  string(APPEND man ".SS ${sub}\n.nf\n${sub_roff}.fi\n")
  string(REGEX MATCHALL "--[a-z][a-z-]*" options "${sub_help}")
  list(REMOVE_DUPLICATES options)
  list(JOIN options " " options)
  string(APPEND completion_cases "    ${sub}) options=\"${options}\" ;;\n")
endforeach()
string(APPEND man ".SH EXIT STATUS\n0: every upgrader that ran succeeded; 1: an upgrader answered False or failed; "
                  "2: refused input, nothing changed; 130, 143: interrupted by SIGINT or SIGTERM.\n")
string(APPEND man ".SH FILES\n.TP\n.I /usr/share/kdvq\nThe string table and the sample repository.\n")
file(WRITE "${MAN_PAGE}" "${man}")

list(JOIN subcommands " " subcommand_list)
file(WRITE "${COMPLETION}" "# bash completion of kdvq-upgrade, made from its --help texts
_kdvq_upgrade() {
  local cur=\${COMP_WORDS[COMP_CWORD]} prev=\${COMP_WORDS[COMP_CWORD-1]} options
  if [ \"\$COMP_CWORD\" -eq 1 ]; then
    COMPREPLY=( \$(compgen -W \"${subcommand_list} --help --version\" -- \"\$cur\") )
    return
  fi
  case \"\$prev\" in
    --db|--log|--backup) COMPREPLY=( \$(compgen -f -- \"\$cur\") ); return ;;
  esac
  case \"\${COMP_WORDS[1]}\" in
${completion_cases}    *) options=\"\" ;;
  esac
  COMPREPLY=( \$(compgen -W \"\$options\" -- \"\$cur\") )
}
complete -F _kdvq_upgrade kdvq-upgrade
")
