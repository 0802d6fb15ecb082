# The everyday commands. Each is a thin wrapper: the presets in CMakePresets.json do the same work.

.PHONY: help demo test asan lint bench clean

# The size of the household that `make bench` measures on.
RECORDS ?= 3000000

help:  ## lists these commands
	@sed -n 's/^\([a-z]*\): .*## \(.*\)/  make \1\t\2/p' Makefile | expand -t 16

demo:  ## builds the server and holds a conversation with it about a sample household
	@scripts/setup build
	@cmake --preset release --log-level=WARNING -D LARKSPUR_TESTS=OFF
	@cmake --build --preset release --target larkspur-mcp larkspur-sample
	@node scripts/demo.mjs build/release/bin build/demo

test:  ## builds for debugging and runs all tests
	@scripts/setup all
	@cmake --workflow --preset dev

asan:  ## the same tests under the address and undefined-behaviour sanitizers
	@scripts/setup all
	@cmake --workflow --preset asan

lint:  ## formatting, the second compiler, clang-tidy
	@scripts/setup all
	@scripts/lint

bench:  ## measures every tool against the bare queries, on RECORDS=3000000 records
	@scripts/setup all
	@cmake --preset release --log-level=WARNING -D LARKSPUR_TESTS=OFF -D LARKSPUR_BENCH=ON
	@cmake --build --preset release --target larkspur-sample larkspur_bench
	@scripts/bench $(RECORDS)

clean:  ## removes everything that was built
	rm -rf build
