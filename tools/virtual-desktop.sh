# A desktop without a screen: an X server in memory, a window manager, a compositor and a panel along
# the bottom. Sourced; expects $scratch and the list `started`.

start_virtual_desktop() {
    local size=$1
    : >"$scratch/display"
    Xvfb -displayfd 3 -screen 0 "${size}x24" +extension Composite +extension RANDR \
        -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.log" &
    started+=($!)
    for _ in $(seq 100); do
        [ -s "$scratch/display" ] && break
        sleep 0.1
    done
    export DISPLAY=:$(cat "$scratch/display")
    for _ in $(seq 100); do
        xdpyinfo >/dev/null 2>&1 && break
        sleep 0.1
    done
    xdpyinfo >/dev/null 2>&1 || { cat "$scratch/xvfb.log" >&2; return 1; }

    hsetroot -add '#33548a' -add '#9db8c8' -gradient 0 >/dev/null 2>&1
    openbox >/dev/null 2>&1 &
    started+=($!)
    picom --backend xrender --config /dev/null >/dev/null 2>&1 &
    started+=($!)
    cat >"$scratch/tint2rc" <<'TINT'
rounded = 6
border_width = 0
background_color = #20283a 90
panel_items = TSC
panel_size = 56% 44
panel_padding = 12 0 12
panel_position = bottom center horizontal
panel_background_id = 1
panel_layer = top
strut_policy = follow_size
taskbar_mode = single_desktop
task_text = 1
task_maximum_size = 160 36
time1_format = %H:%M
time1_font = Sans 11
systray_padding = 8 4 4
systray_icon_size = 24
clock_font_color = #e8eef4 100
TINT
    tint2 -c "$scratch/tint2rc" >/dev/null 2>&1 &
    started+=($!)
    sleep 1
}
