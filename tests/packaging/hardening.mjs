// What a program's file tells of the defences that it was built with.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';

import { build, output, source } from './support.mjs';

/** Fails unless the program in the file `program` has every defence of a release. */
export function assertHardened(program) {
  const read = (...what) => output('readelf', ['--wide', ...what, program]);
  const header = read('--file-header');
  const segments = read('--program-headers');
  const dynamic = read('--dynamic');
  const symbols = read('--dyn-syms');

  assert.match(header, /Type: +DYN/, `${program} is position-independent`);
  assert.match(dynamic, /\(FLAGS_1\).*\bPIE\b/, `${program} is a program and no library`);
  assert.match(segments, /GNU_RELRO/, `${program} has relocations that become read-only`);
  assert.match(dynamic, /\(FLAGS(_1)?\).*\b(BIND_)?NOW\b/, `${program} resolves all at its start`);
  assert.match(segments, /GNU_STACK.* RW +0x/, `${program} has a stack that cannot be executed`);
  assert.match(symbols, /\b__stack_chk_fail\b/, `${program} guards its stack`);
  // Which level of _FORTIFY_SOURCE called for them cannot be seen.
  assert.match(symbols, /\b__\w+_chk\b(?<!__stack_chk)/, `${program} checks lengths`);
  if (process.arch === 'x64') {
    const room = { maxBuffer: 256 * 1024 * 1024 };
    const code = output('objdump', ['--disassemble', '--no-show-raw-insn', program], room);
    // A probe of the page that a large frame reaches; nothing else adds zero bits to the stack.
    assert.match(code, /\bor[ql] +\$0x0,\S*\(%r[sb]p/, `${program} probes its stack`);
    // The libraries that a program carries bring some; a program of ours has them in thousands. That
    // the file as a whole is noted as marked is not asked for: some systems' start files have none.
    const marks = code.match(/\bendbr64\b/g) ?? [];
    assert.ok(marks.length > 1000, `${program} marks where jumps may lead to: ${marks.length}`);
  }
  assert.doesNotMatch(dynamic, /\((TEXTREL|RPATH|RUNPATH)\)/, `${program} is complete`);
}

/** Fails when the file `program` names a folder of the machine that it was built on. */
export function assertNamesNoBuildFolder(program) {
  const bytes = readFileSync(program, 'latin1');
  for (const folder of [`${source}/src/`, `${source}/apps/`, `${build}/`]) {
    assert.ok(!bytes.includes(folder), `${program} names ${folder}`);
  }
}
