# Files and versions: a path split by the platform's rules, a version resource, a version comparison.
say "A path split into its parts"
tav path 'C:\windows\system32\kernel32.dll'
say "The version resource of Wine's kernel32.dll"
tav version 'C:\windows\system32\kernel32.dll'
say "Comparing two version numbers (major.minor.fix.build)"
tav vercmp 6.20.1234.7 6.20.1199.9
say "The verbs that print records also write JSON"
tav path --json 'C:\windows\system32\kernel32.dll'
