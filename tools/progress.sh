# Shows what a long step does while it takes its time: on a terminal in one line that is written
# over, elsewhere not at all. Sourced by the scripts at the root.

progress_began=$SECONDS
progress_shown=

# show_progress TEXT: in place of the line before.
show_progress() {
    [ -t 1 ] || return 0
    local width=${COLUMNS:-$(tput cols 2>/dev/null || echo 80)}
    printf '\r\033[K%s' "${1:0:$((width - 1))}"
    progress_shown=yes
}

# end_progress: the terminal as it was before the line.
end_progress() {
    [ -z "$progress_shown" ] || printf '\r\033[K'
    progress_shown=
}

# follow_build FOLDER: reads what the build tool prints and shows how far it is. It tells of a step
# when that ends; of the long one, the drawing, the pictures in the folder tell meanwhile.
follow_build() {
    local line='' part what status drawn=0 count
    while true; do
        status=0
        IFS= read -r -t 1 part || status=$?
        line+=$part
        if [ "$status" -gt 128 ]; then
            [ -t 1 ] || continue
            count=$(find "$1/sheets" -name '*.png' 2>/dev/null | wc -l)
            [ "$count" -eq "$drawn" ] || [ "$drawn" -eq 0 ] ||
                show_progress "  drawing the creatures: $count pictures"
            drawn=$count
            continue
        fi
        [ "$status" -eq 0 ] || break
        case $line in
            \[*/*\]*)
                what=${line#*] }
                case $what in
                    Building*|Linking*) what=${what##*/}; what=${what%.o} ;;
                esac
                show_progress "  ${line%%]*}] $what" ;;
        esac
        line=''
    done
    end_progress
}

# follow_packages: reads what apt prints.
follow_packages() {
    local line
    while IFS= read -r line; do
        case $line in
            Get:*|Unpacking*|Setting\ up*) show_progress "  $line" ;;
        esac
    done
    end_progress
}

# took SECONDS: as a person says it.
took() {
    if [ "$1" -ge 60 ]; then printf '%d min %d s' $(($1 / 60)) $(($1 % 60)); else printf '%d s' "$1"; fi
}

# say_how_long WHAT: how long it took since this file was read.
say_how_long() { echo "$1 after $(took $((SECONDS - progress_began)))."; }
