# Desktop helpers: clipboard text, abortable waits, event sounds and the folder picker.
say "Clipboard text, put there by one process and read by another"
tav clip set "Grüße from the thumb button: é € 中"
tav clip get

say "A wait of 250 ms that keeps the message loop alive"
tav wait 250

say "An event without a sound in the scheme stays silent (no default beep)"
tav sound ProfileSwitched

say "The folder picker, for real under Xvfb: a screenshot, then the demo cancels it"
shot="$build/demo-folder-picker.png"
rm -f "$shot"
tav pick-folder --cancel-after 6000 'C:\users\Public' &
picker=$!
sleep 3
tav screenshot "$shot"
wait "$picker"
if [ -s "$shot" ]; then echo "screenshot of the folder picker: $shot"; else echo "no screenshot taken"; fi
