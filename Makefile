# The everyday commands. Each is a thin wrapper: the presets in CMakePresets.json do the same work.

.PHONY: help demo test asan lint clean

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

clean:  ## removes everything that was built
	rm -rf build
