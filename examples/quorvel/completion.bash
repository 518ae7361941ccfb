# SPDX-License-Identifier: Apache-2.0
# Completion of the subcommands and options of quorvel and quorvel-sandbox in bash.

# Completes the current word from the given words.
_quorvel_reply() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "${COMP_WORDS[COMP_CWORD]}")
}

# Completes the current word as a file.
_quorvel_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
}

_quorvel_batch() {
  if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
    _quorvel_reply "--input-format --near --format --columns --output --resume --unordered --in-flight
      --rate --retries --backend --trace --help"
  elif [ "$COMP_CWORD" -eq 2 ]; then
    _quorvel_reply "route candidates suggest reverse"
  else
    _quorvel_files
  fi
}

_quorvel() {
  COMPREPLY=()
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --from | --to | --near | --min-score | --arrive | --extent | --key | --backend) return ;;
    --columns | --in-flight | --rate | --retries) return ;;
    --format) _quorvel_reply "ndjson csv geojson"; return ;;
    --input-format) _quorvel_reply "csv ndjson"; return ;;
    --output | --picture) _quorvel_files; return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    _quorvel_reply "route candidates suggest reverse batch --help --version"
    return
  fi
  local common="--json --backend --trace --help"
  case ${COMP_WORDS[1]} in
    route) _quorvel_reply "--from --to --near --min-score --arrive --geojson --picture $common" ;;
    batch) _quorvel_batch ;;
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
    *) _quorvel_reply "--port --map --log --open --help --version" ;;
  esac
}

complete -F _quorvel quorvel
complete -F _quorvel_sandbox quorvel-sandbox
