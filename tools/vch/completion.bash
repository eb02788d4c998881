# Bash completion of vch: verbs and options stand here, the names of classes come from the schema.

_vch_after() { # _vch_after <words...>: is the command line's verb one of these?
    local verb
    for verb in "$@"; do
        [[ " $_vch_verb " == " $verb " ]] && return
    done
    return 1
}

_vch() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local vch=${COMP_WORDS[0]} word words=() _vch_verb

    # Verbs are the words in front of the current one that are no options and follow none with a value.
    local i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        case $word in
            -n | --namespace | -u | --user | -o | --output-format | --propertylist | --pl | --null | -s | --severity | \
                --since | --until | --last) ((++i)) ;;
            -*) ;;
            *) words+=("$word") ;;
        esac
    done
    case ${words[0]} in
        instance | class | log) _vch_verb="${words[0]} ${words[1]}" ;;
        sp) _vch_verb="${words[*]}" ;;
        *) _vch_verb=${words[0]} ;;
    esac

    local choices=
    case $previous in
        -o | --output-format) choices="table mof json xml" ;;
        -n | --namespace) choices="root/cimv2" ;;
        -s | --severity) choices="informational minor major critical" ;;
        --since | --until | --last) ;;
        *)
            case $_vch_verb in
                "") choices="instance class sp overview health log selfcheck ei ein gi mi cm gc --help --version" ;;
                "instance ") choices="enumerate get count modify invokemethod" ;;
                "log ") choices="show clear note" ;;
                "log show")
                    choices="sel iel --severity --since --until --last --details --follow"
                    choices+=" --output-format --namespace --user --journal --help"
                    ;;
                "log clear") choices="sel iel --namespace --user --journal --help" ;;
                "log note") choices="--namespace --user --journal --help" ;;
                "class ") choices="find get enumerate tree" ;;
                overview) choices="--output-format --namespace --user --journal --help" ;;
                health) choices="--quick --namespace --user --journal --help" ;;
                sp) choices="create path info mask supply blade agent notify" ;;
                "sp supply") choices="pull plug" ;;
                "sp blade") choices="on off" ;;
                "sp agent") choices="connect disconnect" ;;
                "sp notify") choices="create post watch remove" ;;
                "sp create") choices="--force" ;;
                sp*) ;;
                *)
                    if [[ $current == -* && $_vch_verb == selfcheck ]]; then
                        choices="--help"
                    elif [[ $current == -* ]]; then
                        choices="--help --output-format"
                        _vch_after "class enumerate" && choices+=" --deep --names-only"
                        if [[ $_vch_verb != class* && $_vch_verb != gc ]]; then
                            choices+=" --namespace --user --journal"
                            _vch_after "instance enumerate" ei && choices+=" --names-only --propertylist"
                            _vch_after "instance get" gi && choices+=" --propertylist"
                            _vch_after "instance modify" mi "instance invokemethod" cm && choices+=" --null"
                        fi
                    else
                        choices=$("$vch" class find 2>/dev/null)
                        choices+=" ${choices//TRV_oVTA/}"
                    fi
                    ;;
            esac
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$current")
}

complete -F _vch vch
