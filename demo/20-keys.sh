# Keystroke scripts: escaping, the key queue of a script, and typing into Wine's notepad.
say "Text escaped so that a keystroke script types it literally"
tav escape "50% (a+b) {x}"
say "A script parsed without sending anything: the keys it will press"
tav keys --dry-run "+(hi) there~{TAB 2}x"
say "A script checked before it is sent: what is wrong and where, or what it will do"
tav keys --check "abc{ENTR}"
tav keys --check "+(hi) there~{TAB 2}x"
say "Typing a script into Wine's notepad, then what notepad shows"
win notepad.exe &
notepad_pid=$!
tav keys --delay 2000 --show "+hello from +tav+util!~{- 3}~+(shift group) {x 3}{BS}{TAB}done"
tav screenshot "$build/demo-keys.png"
win taskkill.exe /f /im notepad.exe
wait "$notepad_pid" 2>/dev/null
