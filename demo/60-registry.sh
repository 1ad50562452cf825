say "Registry: a string written through CRegistry (stored without a terminator) and read back"
tav reg write 'HKCU\Software\TavUtil Demo' Greeting "Hello from the thumb button"
tav reg read 'HKCU\Software\TavUtil Demo' Greeting
say "Read-only opens look in the native view, then in the 32-bit view; other types print as bytes"
tav reg read 'HKLM\System\CurrentControlSet\Control\Windows' CSDVersion
tav reg list 'HKLM\Software\Microsoft\Windows NT'
say "A missing value is an error with the Windows status"
tav reg read 'HKCU\Software\TavUtil Demo' Missing
