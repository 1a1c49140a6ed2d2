# bash completion for xms: commands, options, message types and the fields of a type.
# shellcheck shell=bash

# The command on the line, and the type behind it.
_xms_look() {
    local i
    command='' type=''
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --socket | --color | --timeout | --raw | --root | --only | --type | --log | --list) ((i++)) ;;
        -*) ;;
        *)
            if [[ -z $command ]]; then
                command=${COMP_WORDS[i]}
            elif [[ -z $type ]]; then
                type=${COMP_WORDS[i]}
            fi
            ;;
        esac
    done
}

_xms_types() {
    xms types 2>/dev/null | sed -nE 's/^ +[0-9]+ +([a-z0-9_]+) .*/\1/p'
}

# The fields of a type, with their "=".
_xms_fields() {
    xms describe --json "$1" 2>/dev/null | grep -oE '"name":"[^"]*","offset"' | sed -E 's/"name":"([^"]*)".*/\1=/'
}

_xms_options() {
    printf '%s\n' --help --json --socket --color
    case $1 in
    '') printf '%s\n' --version ;;
    serve) printf '%s\n' --keep --quiet --secrets ;;
    set) printf '%s\n' --fresh --force --timeout --raw --log --secrets ;;
    get) printf '%s\n' --all --yaml --secrets ;;
    apply) printf '%s\n' --dry-run --stop --go-on --keep --again --timeout --log --secrets ;;
    preview) printf '%s\n' --fresh --force ;;
    describe) printf '%s\n' --markdown --settings --man ;;
    watch) printf '%s\n' --dump --type --only --log --secrets ;;
    record) printf '%s\n' --files --list --log --secrets ;;
    report) printf '%s\n' --secrets ;;
    replay) printf '%s\n' --timeout ;;
    check) printf '%s\n' --root ;;
    esac
}

_xms() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command type words=''
    COMPREPLY=()
    _xms_look
    case $previous in
    --type) words=$(_xms_types) ;;
    --only) words=refused ;;
    --color) words='auto always never' ;;
    --root)
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
        ;;
    --socket | --raw | --timeout | --log | --list)
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    *)
        if [[ $current == -* ]]; then
            words=$(_xms_options "$command")
        elif [[ -z $command ]]; then
            words='serve set preview get apply types watch describe record replay report check'
        else
            case $command:$type in
            set: | preview: | get: | describe:) words=$(_xms_types) ;;
            set:* | preview:* | get:*) words=$(_xms_fields "$type") ;;
            apply:* | record:* | replay:* | report:* | check:*)
                mapfile -t COMPREPLY < <(compgen -f -- "$current")
                return
                ;;
            esac
        fi
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    [[ ${COMPREPLY[0]-} != *= ]] || compopt -o nospace 2>/dev/null || true
}

complete -F _xms xms
