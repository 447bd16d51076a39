# `make demo` and `make test` work on a fresh Debian 12 machine as root.
PRESET ?= default
BUILD_DIR := build/$(PRESET)

.PHONY: setup build demo test test-asan bench clean

setup:
	@bash Scripts/setup.sh

build: setup
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j 2

demo: build
	$(BUILD_DIR)/maptorn demo

test: build
	ctest --preset $(PRESET)

test-asan:
	$(MAKE) test PRESET=asan

clean:
	rm -rf build
