# `make demo` and `make test` work on a fresh Debian 12 machine as root.
SHELL := /bin/bash
PRESET ?= default
BUILD_DIR := build/$(PRESET)

.PHONY: setup build demo editor-demo test test-asan check-editor fuzz bench clean

setup:
	@bash Scripts/setup.sh

build: setup
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j 2

# The demo needs the tool, the stand-in engine and the sandbox only, not the test suites.
demo: setup
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j 2 --target maptorn maptorn-standin maptorn-sandbox
	$(BUILD_DIR)/maptorn demo

# The same journey through the editor's own pages, on the stand-in editor: each page as the modder
# sees it, then the files the journey produced.
editor-demo: setup
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j 2 --target maptorn-editor-demo
	$(BUILD_DIR)/maptorn-editor-demo

test: build
	ctest --preset $(PRESET)

test-asan:
	$(MAKE) test PRESET=asan

# Throughput against standard tools, side by side in one run: extraction against unzip, then a
# 1 GiB mod file downloaded against curl -o and uploaded as form-data against curl -F through a
# sandbox on loopback, and the install of a large plug-in archive (three 200 MiB files and 5,000
# small ones) against curl -o && unzip -q (MAPTORN_BENCH_SIZE_MIB=64 for a quick check).
# Ends with the README's benchmark table for this run and this machine.
bench: build
	set -o pipefail; { $(BUILD_DIR)/maptorn-extract-bench && $(BUILD_DIR)/maptorn-download-bench \
		&& $(BUILD_DIR)/maptorn-upload-bench && $(BUILD_DIR)/maptorn-install-bench; } | tee $(BUILD_DIR)/bench.log
	@bash Scripts/bench-table.sh $(BUILD_DIR)/bench.log

# The editor plug-in built as far as a machine without the engine can: the editor module against the
# declared engine surface (Tools/EngineSurface), the core under the engine's flags and for Windows,
# and every core symbol the editor module uses exported (Scripts/check-editor.sh says what it proves).
check-editor: setup
	bash Scripts/check-editor.sh

# A short run of the fuzz targets: random bytes into the readers of mod.io answers.
fuzz: setup
	cmake --preset fuzz
	cmake --build --preset fuzz -j 2 --target MaptornFuzzReaders
	mkdir -p build/fuzz/corpus
	build/fuzz/Tests/MaptornFuzzReaders -max_total_time=$${FUZZ_SECONDS:-30} -rss_limit_mb=1024 build/fuzz/corpus

clean:
	rm -rf build
