# TavUtil: `make demo` and `make test` do all set-up on a fresh Debian 12 machine.
# CONFIG=Debug (or RelWithDebInfo, ...) builds in its own folder, build-debug, unless BUILD says otherwise.
CONFIG ?= Release
BUILD ?= $(if $(filter Release,$(CONFIG)),build,build-$(shell echo $(CONFIG) | tr A-Z a-z))
JOBS ?= $(shell nproc)
# Test programs that share nothing run side by side (see cmake/TavUtilTesting.cmake); most of a test's time
# is spent waiting on Wine and on windows, so a few more than the cores.
TEST_JOBS ?= $(shell echo $$(( $(JOBS) + 2 )))
# Absolute: the packaging tests configure projects of their own with the toolchain file this build used.
TOOLCHAIN := $(CURDIR)/cmake/mingw-w64-x86_64.cmake
SESSION := cmake/wine-session.sh
# The compiler cache (see CMakeLists.txt): paths below the tree are hashed relative to it.
export CCACHE_BASEDIR := $(CURDIR)
export CCACHE_NOHASHDIR := 1

# Debian packages the build and the tests need, and a command each one provides.
PACKAGES := g++-mingw-w64-x86-64-posix:x86_64-w64-mingw32-g++-posix \
            binutils-mingw-w64-x86-64:x86_64-w64-mingw32-objdump \
            wine64:/usr/lib/wine/wine64 wine:wineboot xvfb:Xvfb xauth:xauth \
            googletest:/usr/src/googletest/CMakeLists.txt cmake:cmake ninja-build:ninja \
            clang:clang lld:lld-link llvm:llvm-dlltool \
            clang-format:clang-format ccache:ccache doxygen:doxygen \
            nlohmann-json3-dev:/usr/include/nlohmann/json.hpp
# Physical input for the keys tests: keys held and typed as a person would, through the X server.
# xmodmap gives Wine a keymap with every printable ASCII character on its US key (tests/support/TestKeyboard.md).
PACKAGES += xdotool:xdotool x11-xserver-utils:xmodmap
# What `make demo` needs on its own (no test, documentation or Microsoft-ABI tools), so that a fresh machine
# installs less before the demo runs.
DEMO_PACKAGES := $(filter g++-mingw-w64% binutils-mingw-w64% wine64:% wine:% xvfb:% xauth:% cmake:% ninja-build:% \
                          nlohmann-json3-dev:% x11-xserver-utils:%,$(PACKAGES))
# The demo's configuration of a new build folder: nothing that needs a package the demo does not install
# (tests/package/check_demo_needs.sh checks it).
DEMO_CONFIGURE := -DTAVUTIL_BUILD_TESTS=OFF -DTAVUTIL_BUILD_DOCS=OFF -DTAVUTIL_BUILD_BENCH=OFF \
                  -DTAVUTIL_BUILD_MSVC_IMPORT_LIB=OFF

.PHONY: all deps demo-deps print-demo configure build test demo bench install clean loaded-runs hardened-build test-hardened fuzz fuzz-ranges fuzz-ledger format \
        format-check docs dist export-baseline faults

all: build

# Installs with apt-get the packages of a list whose probe (a command, or a path) is missing.
define install_missing
	@missing=""; for entry in $(1); do \
	    pkg=$${entry%%:*}; probe=$${entry#*:}; \
	    if [ "$${probe#/}" != "$$probe" ]; then [ -e "$$probe" ] || missing="$$missing $$pkg"; \
	    else command -v "$$probe" >/dev/null 2>&1 || missing="$$missing $$pkg"; fi; \
	done; \
	if [ -n "$$missing" ]; then \
	    echo "installing:$$missing"; \
	    SUDO=""; [ "$$(id -u)" = 0 ] || SUDO=sudo; \
	    $$SUDO apt-get update -qq && \
	    DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq --no-install-recommends $$missing; \
	fi
endef

deps:
	$(call install_missing,$(PACKAGES))
demo-deps:
	$(call install_missing,$(DEMO_PACKAGES))
# For tests/package/check_demo_needs.sh: the demo's packages, then its configure options, a line each.
print-demo:
	@echo $(foreach entry,$(DEMO_PACKAGES),$(firstword $(subst :, ,$(entry))))
	@echo $(DEMO_CONFIGURE)

# Configures when the folder is new or was configured for another CONFIG. The compile commands
# (compile_commands.json) are written for editors; the source root gets a link to those of the default build.
configure: deps
	@if [ ! -f $(BUILD)/build.ninja ] || \
	    ! grep -qx 'CMAKE_BUILD_TYPE:STRING=$(CONFIG)' $(BUILD)/CMakeCache.txt 2>/dev/null || \
	    ! grep -qx 'TAVUTIL_BUILD_TESTS:BOOL=ON' $(BUILD)/CMakeCache.txt; then \
	    cmake -S . -B $(BUILD) -G Ninja -DCMAKE_TOOLCHAIN_FILE=$(TOOLCHAIN) -DCMAKE_BUILD_TYPE=$(CONFIG) \
	        -DTAVUTIL_BUILD_TESTS=ON -DTAVUTIL_BUILD_DOCS=ON -DTAVUTIL_BUILD_BENCH=ON \
	        -DTAVUTIL_BUILD_MSVC_IMPORT_LIB=ON; \
	fi
	@[ -e compile_commands.json ] || [ "$(BUILD)" != build ] || ln -s build/compile_commands.json .

build: deps configure
	cmake --build $(BUILD) -j $(JOBS)

# Every test program runs once: a failure is a failure. The sources must be as clang-format writes them.
test: format-check build
	cd $(BUILD) && ctest --output-on-failure --timeout 900 -j $(TEST_JOBS)

# The C and C++ sources as .clang-format describes them: `make format` rewrites them, `make format-check`
# (part of `make test`) fails on any difference and lists the files.
FORMAT_SOURCES = $(shell git ls-files '*.c' '*.cpp' '*.h' 2>/dev/null)
format: deps
	@clang-format -i $(FORMAT_SOURCES)
format-check: deps
	@files=$$(clang-format --dry-run --Werror $(FORMAT_SOURCES) 2>&1 | grep -E '^[^ ]+: error' | cut -d: -f1 | sort -u); \
	if [ -n "$$files" ]; then echo "not formatted (run make format):"; echo "$$files"; exit 1; fi; \
	echo "format: $(words $(FORMAT_SOURCES)) files as .clang-format writes them"

# The whole suite (with the quick hostile-input pass) on the hardened variant, in its own build folder.
HARDENED_BUILD ?= build-hardened
hardened-build: deps
	cmake -S . -B $(HARDENED_BUILD) -G Ninja -DCMAKE_TOOLCHAIN_FILE=$(TOOLCHAIN) -DCMAKE_BUILD_TYPE=Release \
	    -DTAVUTIL_HARDENED=ON -DTAVUTIL_BUILD_BENCH=OFF
	cmake --build $(HARDENED_BUILD) -j $(JOBS)
test-hardened: hardened-build
	cd $(HARDENED_BUILD) && ctest --output-on-failure --timeout 900 -j $(TEST_JOBS)

# Every system call made to fail in turn, on the hardened variant: faults.exe runs each operation once counting its
# calls, then once per (function, k-th call) with that call failing (at most FAULT_POINTS calls of one function: the
# first, the last and a spread), and ends with a table per area and `faults: N operations, M injection points, F
# failed`. FAULT_AREA runs one area only.
FAULT_POINTS ?= 64
FAULT_AREA ?=
faults: hardened-build
	@$(SESSION) start $(HARDENED_BUILD) && status=0; \
	$(SESSION) run $(HARDENED_BUILD) $(HARDENED_BUILD)/bin/faults.exe --all --max-points $(FAULT_POINTS) \
	    $(if $(FAULT_AREA),--area $(FAULT_AREA)) || status=1; \
	$(SESSION) stop $(HARDENED_BUILD); exit $$status

# The long hostile-input pass, on the hardened variant: TAVUTIL_FUZZ_INPUTS inputs per driver (default
# 1,000,000), one process per driver, FUZZ_JOBS at a time, and a table at the end (cmake/fuzz-long.sh).
# FUZZ_FILTER picks drivers (a gtest filter, e.g. Fuzz.Parser:Fuzz.Escape).
FUZZ_JOBS ?= $(JOBS)
FUZZ_FILTER ?= Fuzz.*
fuzz: hardened-build
	bash cmake/fuzz-long.sh $(HARDENED_BUILD) $(FUZZ_JOBS) '$(FUZZ_FILTER)'

# The same pass in ranges that resume across sessions (cmake/fuzz-ranges.sh): the next ranges of FUZZ_DRIVERS
# that tests/fuzz/long-pass-ledger.txt does not hold yet, one driver at a time, for FUZZ_MINUTES; each finished
# range is a line of the ledger, to be committed. Inputs a ledger line holds are not run again when a count
# changes. Two calls with different FUZZ_SESSION folders (each its own Wine desktop and registry) run side by side.
FUZZ_MINUTES ?= 60
FUZZ_SESSION ?= $(HARDENED_BUILD)
FUZZ_DRIVERS ?= Automation CapiAutomation RunningObjects CapiRunningObjects Windows CapiWindows ProcessNames \
                CapiProcessNames Processes CapiProcesses Clipboard CapiClipboard SendText CapiSendText Messengers \
                CapiMessengers FilePicker CapiFilePicker Sounds CapiSounds
fuzz-ranges: hardened-build
	FUZZ_SESSION=$(FUZZ_SESSION) bash cmake/fuzz-ranges.sh $(HARDENED_BUILD) tests/fuzz/long-pass-ledger.txt $(FUZZ_MINUTES) $(FUZZ_DRIVERS)
# What the ledger holds: a row per driver (inputs held of its count, seconds, rate, failures).
fuzz-ledger:
	@bash cmake/fuzz-ledger.sh table tests/fuzz/long-pass-ledger.txt

# The demonstration needs only the DLL and the command-line tool. A folder that `make test` configured is used as
# it is; a new one is configured without the tests, the benchmarks and the documentation (`make test` adds
# them later).
demo: demo-deps
	@if [ ! -f $(BUILD)/build.ninja ] || \
	    ! grep -qx 'CMAKE_BUILD_TYPE:STRING=$(CONFIG)' $(BUILD)/CMakeCache.txt 2>/dev/null; then \
	    cmake -S . -B $(BUILD) -G Ninja -DCMAKE_TOOLCHAIN_FILE=$(TOOLCHAIN) -DCMAKE_BUILD_TYPE=$(CONFIG) \
	        $(DEMO_CONFIGURE); \
	fi
	cmake --build $(BUILD) --target tavutil -j $(JOBS)
	bash demo/demo.sh $(BUILD)

# RUNS full test runs, one after the other, while CPU burners keep every core busy: a test that fails only
# on a loaded machine shows here (cmake/loaded-runs.sh).
# BURNERS=0 when something else keeps the cores busy (each run's line shows the load average).
RUNS ?= 10
BURNERS ?= $(JOBS)
loaded-runs: build
	bash cmake/loaded-runs.sh $(BUILD) $(RUNS) $(TEST_JOBS) $(BURNERS)

bench: build
	cmake --build $(BUILD) --target benchmarks -j $(JOBS)
	@rm -f $(BUILD)/bin/bench_table.txt; $(SESSION) start $(BUILD) && \
	status=0; for b in $(BUILD)/bin/bench_*.exe; do \
	    echo "== $$(basename $$b)"; $(SESSION) run $(BUILD) "$$b" || status=1; \
	done; $(SESSION) stop $(BUILD); \
	echo; echo "== benchmark table (ratios: library / baseline, median of interleaved pairs)"; \
	cat $(BUILD)/bin/bench_table.txt; exit $$status

# Long runs for leaks and stuck keys: soak.exe calls each stateful operation thousands of times and
# keys_soak.exe types 10,000 generated scripts and more; non-zero when anything grew or stayed down.
.PHONY: soak
soak: build
	@$(SESSION) start $(BUILD) && status=0; \
	$(SESSION) run $(BUILD) $(BUILD)/bin/soak.exe || status=1; \
	$(SESSION) run $(BUILD) $(BUILD)/bin/keys_soak.exe --failures $(BUILD)/keys_soak_failures.txt || status=1; \
	$(SESSION) stop $(BUILD); exit $$status

# The recorder's long round trip: RECORDER_CASES key sequences of the grammar generator pressed on the X
# keyboard (xdotool), recorded and played back (tests/keys/RecorderRoundTripTest.cpp; `make test` runs 30).
# RECORDER_SEED picks the generator's seed, RECORDER_FIRST the first case pressed: one failing case alone is
# `make recorder-long RECORDER_SEED=26 RECORDER_FIRST=58 RECORDER_CASES=1`.
RECORDER_CASES ?= 1000
RECORDER_SEED ?= 24
RECORDER_FIRST ?= 0
.PHONY: recorder-long
recorder-long: build
	@$(SESSION) start $(BUILD) && status=0; \
	TAVTEST_RECORDER_CASES=$(RECORDER_CASES) TAVTEST_RECORDER_SEED=$(RECORDER_SEED) \
	    TAVTEST_RECORDER_FIRST=$(RECORDER_FIRST) $(SESSION) run $(BUILD) $(BUILD)/bin/keys_tests.exe \
	    --gtest_filter='KeysRecorderRoundTrip.*' || status=1; \
	$(SESSION) stop $(BUILD); exit $$status

install: build
	cmake --install $(BUILD) --prefix $(or $(PREFIX),$(BUILD)/install)

# The reference documentation of the C interface (Doxygen): $(BUILD)/docs/html/index.html; warnings in
# $(BUILD)/docs/warnings.txt (the test package_docs fails on any).
docs: configure
	cmake --build $(BUILD) --target docs

# The release: dist/TavUtil-<version>-win64.zip and its .sha256 (cmake/make-dist.sh).
dist: build
	cmake --build $(BUILD) --target dist

# Rewrites the checked-in lists of C and C++ exports (tests/package/exports-*.txt) from the built DLL; review the
# difference before committing it (docs/compatibility.md).
export-baseline: configure
	cmake --build $(BUILD) --target export-baseline

clean:
	-$(SESSION) stop $(BUILD) 2>/dev/null
	rm -rf $(BUILD)
