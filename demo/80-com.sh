say "Automation: a new object by ProgID, its type name, and properties read by name without a type check"
tav com name VBScript.RegExp
tav com get VBScript.RegExp Global --bool
tav com get Scripting.FileSystemObject Drives --object
say "Group membership: the library's own progress lines, then the answers"
tav admin
say "Support query: appended to the maker's addresses only (any other address gets none); a locale or button in the address is kept"
tav support-query 'http://www.velmorax.com/support?B=3'
tav support-query 'HTTP://WWW.IPLUMEKEYBOARD.COM/faq?L=fr'
tav support-query 'http://www.example.com/support'
