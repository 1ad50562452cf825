# How many inputs the long hostile-input pass gives each driver (sourced by fuzz-long.sh and fuzz-ranges.sh):
# 1,000,000, or, for a driver whose input costs more than 5 ms (a window, a process, typed keys), the
# inputs of about an hour (the table below). TAVUTIL_FUZZ_INPUTS, when set, is every driver's count.

# Rates measured on the hardened build that the pass runs on, one driver at a time on a quiet machine (two
# cores, load about 1), over 100 to 5,000 inputs from the middle of each pass. Drivers at 5 ms per input or
# less run 1,000,000 and are not listed: the clipboard drivers 1.3 ms, the file-picker filter 0.1 ms, the
# sound drivers 1.5 ms (no sound device here: nothing plays), and both typing drivers 1.5 ms, measured over
# whole ranges of the pass (87,500 inputs or more, under load): a short run of them is mostly the making of
# their window (3,000 inputs took 15 s).
declare -A hour_inputs=(
    [Fuzz.ProcessNames]=630000        # 175 inputs/s (5.7 ms): three snapshots of the processes of the session
    [Fuzz.CapiProcessNames]=450000    # 125 inputs/s (8.0 ms)
    [Fuzz.Processes]=25000            # 7.1 inputs/s (141 ms): a child process started and ended
    [Fuzz.CapiProcesses]=12000        # 3.4 inputs/s (293 ms)
    [Fuzz.Windows]=305000             # 85 inputs/s (11.8 ms): a class and a window tree made and taken down
    [Fuzz.CapiWindows]=295000         # 82 inputs/s (12.2 ms)
    [Fuzz.RunningObjects]=490000      # 136 inputs/s (7.3 ms): monikers registered in the Running Object Table
    [Fuzz.CapiRunningObjects]=415000  # 115 inputs/s (8.7 ms)
    [Fuzz.Messengers]=650000          # 180 inputs/s (5.6 ms): registry values written, launches recorded
    [Fuzz.CapiMessengers]=305000      # 85 inputs/s (11.8 ms)
)

fuzz_count() { echo "${TAVUTIL_FUZZ_INPUTS:-${hour_inputs[$1]:-1000000}}"; }
