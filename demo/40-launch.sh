# Program launching: a command line split into program and arguments, then started as a button would.
say "A typed command line, split into the program and its arguments (the leading blank belongs to them)"
tav split '%WINDIR%\notepad.exe readme.txt'
say "Starting notepad through the shell, as a button bound to a program does"
tav run 'notepad.exe'
say "Installed messengers and application paths, read from the registry"
tav messengers
tav apppath iexplore exe
