say "The process in front: Wine's notepad, started in the background"
win notepad.exe &
notepad_job=$!
tav foreground --after 1500
tav foreground --full
tav foreground --full --strip
say "Is a program running? (\".exe\" is added unless the name ends with it)"
tav running notepad
tav running NOTEPAD.EXE --console
tav running notepad.EXE.exe
say "The modules notepad has loaded, in load order"
notepad_pid=$("$session" run "$build" winedbg.exe --command "info proc" 2>/dev/null |
    awk "/'notepad.exe'/ { print \$1; exit }" | tr -d '=')
[ -n "$notepad_pid" ] && tav modules $((16#$notepad_pid)) | head -8
win taskkill.exe /f /im notepad.exe
wait "$notepad_job" 2>/dev/null
