// The .tar.gz for any Linux: unpacked, and run where nothing but the C library is installed.

import assert from 'node:assert/strict';
import { existsSync } from 'node:fs';
import { basename, join } from 'node:path';
import { after, before, describe, test } from 'node:test';

import { assertHardened, assertNamesNoBuildFolder } from './hardening.mjs';
import {
  introductionAlone,
  neededLibraries,
  ofTheSystem,
  output,
  packageWith,
  programs,
  temporaryFolder,
  version,
} from './support.mjs';

// libzip has no static form; what reads archives and XML stays outside the import program.
const ofTheImporter = /^(libzip|libexpat)\.so\.\d+$/;

describe('the archive', { skip: process.platform !== 'linux' }, () => {
  const archive = packageWith('.tar.gz');
  const folder = temporaryFolder({ after });
  const top = join(folder, basename(archive, '.tar.gz'));

  before(() => {
    output('tar', ['--extract', '--file', archive, '--directory', folder]);
  });

  test('bears the version and holds one folder of its own name', () => {
    assert.ok(basename(archive).startsWith(`larkspur-mcp-${version}-linux-`));
    const roots = output('tar', ['--list', '--file', archive])
      .trimEnd()
      .split('\n')
      .map((name) => name.split('/')[0]);
    assert.deepEqual([...new Set(roots)], [basename(top)]);
  });

  test('carries the terms of the libraries that are inside its programs', () => {
    for (const library of ['libsodium', 'libstdc++', 'nlohmann-json', 'sqlite']) {
      const terms = join(top, 'share/doc/larkspur-mcp/third-party', library);
      assert.ok(existsSync(terms), terms);
    }
  });

  for (const program of programs) {
    test(`${program} needs the C library, and no more than it cannot carry`, () => {
      const needed = neededLibraries(join(top, 'bin', program));
      const allowed = (name) =>
        ofTheSystem.test(name) || (program === 'larkspur-import' && ofTheImporter.test(name));

      assert.ok(needed.includes('libc.so.6'));
      assert.deepEqual(
        needed.filter((name) => !allowed(name)),
        [],
      );
    });

    test(`${program} is hardened and names no folder of the machine that built it`, () => {
      assertHardened(join(top, 'bin', program));
      assertNamesNoBuildFolder(join(top, 'bin', program));
    });
  }

  test('the server needs no newer C library than the bundle says', () => {
    const server = join(top, 'bin/larkspur-mcp');
    const versions = output('readelf', ['--wide', '--version-info', server])
      .match(/\bGLIBC_2\.\d+/g)
      .map((name) => Number(name.split('.')[1]));

    assert.ok(Math.max(...versions) <= 35, `glibc 2.${Math.max(...versions)}`);
  });

  test('the server answers where nothing but the C library is installed', async (t) => {
    const { tools } = await introductionAlone(join(top, 'bin/larkspur-mcp'), t);

    assert.ok(tools.length > 0);
  });
});
