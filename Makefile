# Thin wrapper over CMake: every target bootstraps, configures and builds what it needs.
BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
TSAN_BUILD ?= build-tsan
TSAN_TESTS ?= WorkerPool|JobRunner|SplitRegion|SyncEvent|ImageEval|IEval|Unpack|Rendition|ProgressRunner
TEST_JOBS  ?= $(shell nproc)
WERROR     := $(if $(CI),ON,OFF)
# CI builds every tree from nothing, where compiling each target's sources in
# a few batches pays; day-to-day rebuilds of one file do better without.
UNITY      := $(if $(CI),ON,OFF)
CMAKE_GEN  := cmake -G Ninja -DKORVANEL_WERROR=$(WERROR) -DCMAKE_UNITY_BUILD=$(UNITY)
# The sanitizer trees: debug information for the reports, and -O1, which the
# sanitizers advise for a usable speed; no benchmarks.
CHECKED    := -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" -DKORVANEL_BENCH=OFF

.PHONY: all bootstrap build run test bench package install sanitize tsan fuzz fuzz-build fuzz-merge clean

all: build

bootstrap:
	@scripts/bootstrap

$(BUILD)/build.ninja: CMakeLists.txt | bootstrap
	$(CMAKE_GEN) -S . -B $(BUILD)

build: bootstrap $(BUILD)/build.ninja
	cmake --build $(BUILD)

# Builds only the program and the demo frames it shows, not the tests.
DEMO_TARGETS := korvanel korvanel_demo_frames

run: bootstrap $(BUILD)/build.ninja
	cmake --build $(BUILD) --target $(DEMO_TARGETS)
	@examples/run_demo $(abspath $(BUILD))/korvanel

# Regenerates docs/viewer.png, the README's picture of that demo, under Xvfb.
.PHONY: screenshot
screenshot: bootstrap $(BUILD)/build.ninja
	cmake --build $(BUILD) --target $(DEMO_TARGETS)
	scripts/update_screenshot $(abspath $(BUILD)) docs/viewer.png

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j$(TEST_JOBS)

bench: bootstrap $(BUILD)/build.ninja
	cmake --build $(BUILD) --target korvanel_bench korvanel_viewer_bench
	$(BUILD)/bench/korvanel_bench $(BENCH_ARGS)

# The Debian package (CPack): $(BUILD)/korvanel_<version>_<arch>.deb.
package: build
	cmake --build $(BUILD) --target package

# Installs into CMAKE_INSTALL_PREFIX (/usr/local unless PREFIX=... is given).
install: build
	cmake --install $(BUILD) $(if $(PREFIX),--prefix $(PREFIX))

# The whole suite under AddressSanitizer + UndefinedBehaviorSanitizer; the
# packaging checks build no code of ours, so they run in `make test` only.
sanitize: bootstrap
	$(CMAKE_GEN) -S . -B $(ASAN_BUILD) -DKORVANEL_SANITIZE=ON $(CHECKED)
	cmake --build $(ASAN_BUILD)
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j$(TEST_JOBS) -LE package

# The libFuzzer targets (clang, ASan + UBSan).
fuzz-build: bootstrap
	CXX=clang++ $(CMAKE_GEN) -S . -B $(FUZZ_BUILD) -DKORVANEL_FUZZ=ON -DKORVANEL_TESTS=OFF -DKORVANEL_BENCH=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(FUZZ_BUILD)

# Every libFuzzer target for FUZZ_SECONDS each over its seeds and corpus; fails
# on the first finding. New inputs are kept in $(FUZZ_BUILD)/fuzz/found/.
fuzz: fuzz-build
	scripts/run_fuzzers $(FUZZ_BUILD)/fuzz $(FUZZ_SECONDS)

# Folds the inputs `make fuzz` found into fuzz/corpus/, minimised with
# -merge=1 against the hand-written seeds in fuzz/seeds/.
fuzz-merge: fuzz-build
	scripts/merge_fuzz_corpus $(FUZZ_BUILD)/fuzz

# The threaded parts (pool, jobs, I-Eval runs) under ThreadSanitizer. Qt is
# not built for it, so races reported inside Qt's own libraries are
# suppressed (tests/tsan_qt.supp); every frame of ours stays checked.
tsan: bootstrap
	$(CMAKE_GEN) -S . -B $(TSAN_BUILD) -DKORVANEL_TSAN=ON $(CHECKED)
	cmake --build $(TSAN_BUILD) --target korvanel_tests korvanel_ui_tests
	TSAN_OPTIONS="suppressions=$(CURDIR)/tests/tsan_qt.supp $(TSAN_OPTIONS)" \
	  ctest --test-dir $(TSAN_BUILD) --output-on-failure -j$(TEST_JOBS) -R '$(TSAN_TESTS)'

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD)
