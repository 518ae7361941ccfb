# SPDX-License-Identifier: Apache-2.0
# Completion of the subcommands and options of quorvel and quorvel-sandbox in bash.

# Completes the current word from the given words.
_quorvel_reply() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "${COMP_WORDS[COMP_CWORD]}")
}

_quorvel() {
  COMPREPLY=()
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --from | --to | --near | --arrive | --extent | --key | --backend) return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    _quorvel_reply "route candidates suggest reverse --help --version"
    return
  fi
  local common="--json --backend --trace --help"
  case ${COMP_WORDS[1]} in
    route) _quorvel_reply "--from --to --near --arrive --geojson $common" ;;
    candidates) _quorvel_reply "--near --extent --key $common" ;;
    suggest) _quorvel_reply "--near $common" ;;
    reverse) _quorvel_reply "$common" ;;
  esac
}

_quorvel_sandbox() {
  COMPREPLY=()
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --port) ;;
    --map)
      local word=${COMP_WORDS[COMP_CWORD]}
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.geojson' -- "$word")
      ;;
    *) _quorvel_reply "--port --map --log --help --version" ;;
  esac
}

complete -F _quorvel quorvel
complete -F _quorvel_sandbox quorvel-sandbox
