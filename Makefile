# The everyday commands. Each is a thin wrapper: the presets in CMakePresets.json do the same work.

.PHONY: help demo test asan lint bench bench-growth bench-programs bench-clean coverage package fuzz soak \
  memcheck clean

# More arguments for the configuration of `make test`, such as -D LARKSPUR_WERROR=OFF.
CONFIGURE ?=

# How long `make fuzz` runs each target.
SECONDS ?= 60

# The size of the household that `make bench` measures on.
RECORDS ?= 3000000

help:  ## lists these commands
	@sed -n 's/^\([a-z-]*\):.* ## \(.*\)/  make \1\t\2/p' Makefile | expand -t 20

# `make demo EXPORT=path` talks about the export of an iPhone's Health app; `ZONE=Area/City` is the
# time zone of its owner. Both pass through the environment unchanged, so that no character of a
# name has a meaning to make or the shell.
override EXPORT := $(value EXPORT)
export EXPORT
override ZONE := $(value ZONE)
export ZONE

demo:  ## builds the server and holds a conversation with it, about a sample household or EXPORT=path
	@scripts/setup build
	@cmake --preset release --log-level=WARNING -D LARKSPUR_TESTS=OFF >/dev/null
	@echo "Building the release; the first time takes some minutes."
	@cmake --build --preset release --target larkspur-installed larkspur-sample -- --quiet
	@echo "The programs are in build/release/bin."
	@node scripts/demo.mjs build/release/bin build/demo "$$EXPORT" "$$ZONE"

test:  ## builds for debugging and runs all tests
	@scripts/setup test
	@cmake --preset dev --log-level=WARNING $(CONFIGURE)
	@cmake --build --preset dev
	@ctest --preset dev

asan:  ## the same tests under clang's address and undefined-behaviour sanitizers, and short fuzzing
	@scripts/setup all
	@cmake --workflow --preset asan

lint:  ## formatting, the second compiler, clang-tidy
	@scripts/setup all
	@scripts/lint

bench: bench-programs  ## measures every tool beside its baseline, on RECORDS=3000000 records
	@scripts/bench $(RECORDS)

bench-growth: bench-programs  ## the tools on a history of 1, 8 and 27 years, side by side
	@scripts/bench 375000/1 3000000/8 10000000/27

bench-programs:
	@scripts/setup all
	@cmake --preset release --log-level=WARNING -D LARKSPUR_TESTS=OFF -D LARKSPUR_BENCH=ON
	@cmake --build --preset release --target larkspur-sample larkspur_bench larkspur_process_bench

bench-clean:  ## removes the databases of the benchmarks, not the results
	rm -rf build/bench/*/

fuzz:  ## fuzzes every kind of input, SECONDS=60 each
	@scripts/setup all
	@cmake --preset asan --log-level=WARNING
	@cmake --build --preset asan --target larkspur_fuzz
	@scripts/fuzz $(SECONDS)

soak:  ## calls the server for a minute beside a busy writer that is killed repeatedly
	@scripts/setup test
	@cmake --preset dev --log-level=WARNING
	@cmake --build --preset dev --target larkspur_withstand_tests
	@LARKSPUR_LIVE_SECONDS=60 build/dev/bin/larkspur_withstand_tests --gtest_filter='LiveWriter.*'

memcheck:  ## a whole conversation under valgrind
	@scripts/setup test
	@cmake --preset dev --log-level=WARNING
	@cmake --build --preset dev --target larkspur_withstand_tests
	@build/dev/bin/larkspur_withstand_tests --gtest_filter='Memcheck.*'

coverage:  ## how many lines and branches of each folder the tests reach
	@scripts/setup coverage
	@scripts/coverage

package:  ## packs the .deb, the .tar.gz and the client bundle and tests them
	@scripts/setup package
	@cmake --preset release --log-level=WARNING -D LARKSPUR_TESTS=OFF -D LARKSPUR_PACKAGES=ON
	@cmake --build --preset release --target larkspur-packages
	@ctest --test-dir build/release --label-regex packages --output-on-failure
	@ls -1 build/release/packages/*.*

clean:  ## removes everything that was built
	rm -rf build
