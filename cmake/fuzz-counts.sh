# How many inputs the long hostile-input pass gives each driver (sourced by fuzz-long.sh and fuzz-ranges.sh):
# 1,000,000, or, for a driver whose input costs more than 5 ms (a window, a process, typed keys), the
# inputs of about an hour (the table below). TAVUTIL_FUZZ_INPUTS, when set, is every driver's count.

# Rates measured with runs of 1,000 inputs (100 for a child process) on the development machine: two cores
# shared with other work, Release build. The hardened build is slower by about a third.
declare -A hour_inputs=(
    [Fuzz.ProcessNames]=200000        # 57 inputs/s: three snapshots of the processes of the session
    [Fuzz.CapiProcessNames]=150000    # 43 inputs/s
    [Fuzz.Processes]=5000             # 1.4 inputs/s: a child process started and ended
    [Fuzz.CapiProcesses]=4000         # 1.1 inputs/s
    [Fuzz.Windows]=110000             # 30 inputs/s: a class and a window tree made and taken down
    [Fuzz.CapiWindows]=120000         # 34 inputs/s
    [Fuzz.RunningObjects]=120000      # 33 inputs/s: monikers registered in the Running Object Table
    [Fuzz.CapiRunningObjects]=170000  # 49 inputs/s
    [Fuzz.Clipboard]=650000           # 185 inputs/s: the clipboard filled by another program
    [Fuzz.CapiClipboard]=330000       # 92 inputs/s
    [Fuzz.SendText]=500000            # 143 inputs/s: typed into a window of the test
    [Fuzz.CapiSendText]=570000        # 160 inputs/s
    [Fuzz.Messengers]=310000          # 87 inputs/s: registry values written, launches recorded
    [Fuzz.CapiMessengers]=170000      # 47 inputs/s
    # 35 inputs/s measured on the hardened build in the long pass itself (its first 125,000 inputs took an
    # hour): each input writes the program's sound scheme and plays through the system's sound API.
    [Fuzz.Sounds]=125000
    [Fuzz.CapiSounds]=125000
)

fuzz_count() { echo "${TAVUTIL_FUZZ_INPUTS:-${hour_inputs[$1]:-1000000}}"; }
