// The .deb: its fields, what Debian's own checker says, and an installation in a root that has the
// packages it depends on and nothing else.

import assert from 'node:assert/strict';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { basename, join } from 'node:path';
import { describe, test } from 'node:test';

import {
  build,
  copyIntoRoot,
  cpack,
  ending,
  filesUnder,
  householdInRoot,
  inRoot,
  introduction,
  newRoot,
  output,
  packageWith,
  programs,
  temporaryFolder,
  version,
} from './support.mjs';

const deb = packageWith('.deb');
const field = (name) => output('dpkg-deb', ['--field', deb, name]).trim();

/** The names in a Depends field; of alternatives the one that is installed here. */
function namesIn(depends) {
  return depends
    .split(',')
    .map((group) => group.split('|').map((name) => name.trim().split(/[ :(]/)[0]))
    .map((names) => names.find((name) => name && statusOf(name)))
    .filter(Boolean);
}

/** What dpkg has on record about an installed package; '' when it is not installed. */
function statusOf(name) {
  const { status, stdout } = ending('dpkg-query', ['--status', name]);
  return status === 0 && stdout.includes('\nStatus: install ok installed\n') ? stdout : '';
}

/** `names` and all that these packages depend on. */
function closureOf(names) {
  const closure = new Set();
  const visit = (name) => {
    if (closure.has(name)) return;
    closure.add(name);
    const depends = /^Depends: (.*)$/m.exec(statusOf(name));
    if (depends) namesIn(depends[1]).forEach(visit);
  };
  names.forEach(visit);
  return [...closure];
}

/** A root in which exactly the packages `names` are installed, as far as programs need them. */
function rootWith(names, t) {
  const root = newRoot(t);
  const records = join(root, 'var/lib/dpkg');
  for (const folder of ['info', 'updates']) mkdirSync(join(records, folder), { recursive: true });
  writeFileSync(join(records, 'status'), names.map((name) => `${statusOf(name)}\n`).join(''));
  for (const name of names) {
    const files = output('dpkg-query', ['--listfiles', name]).split('\n');
    const libraries = files.filter((file) => /^(\/usr)?\/lib.*\.so(\.|$)/.test(file));
    libraries.forEach((library) => copyIntoRoot(root, library));
  }
  return root;
}

/** Runs dpkg on `root`, where files belong to the root user even when the test is someone else. */
function dpkg(root, ...args) {
  const order = ['dpkg', `--root=${root}`, '--force-script-chrootless', ...args];
  const [command, ...rest] =
    process.getuid() === 0 ? order : ['unshare', '--map-root-user', ...order];
  return ending(command, rest);
}

describe('the .deb', () => {
  test('bears the version in its name and in its fields', () => {
    assert.equal(field('Version'), `${version}-1`);
    assert.equal(basename(deb), `larkspur-mcp_${version}-1_${field('Architecture')}.deb`);
  });

  test('depends on the libraries of its programs and on time zones', () => {
    const expected = ['libc6', 'libgcc-s1', 'libsodium23', 'libsqlite3-0', 'libstdc++6', 'tzdata'];
    if (programs.includes('larkspur-import')) expected.push('libexpat1', 'libzip4');

    // Ubuntu has renamed some of them.
    const names = namesIn(field('Depends')).map((name) => name.replace(/t64$/, ''));

    assert.deepEqual(names.sort(), expected.sort());
  });

  test('has no error, says the checker of Debian', () => {
    const { status, stdout, stderr } = ending('lintian', [
      '--allow-root',
      '--fail-on=error',
      '--tag-display-limit=0',
      deb,
    ]);

    assert.equal(status, 0, stdout + stderr);
  });

  test('can be installed, answers with what it depends on, can be removed', async (t) => {
    const root = rootWith(closureOf(namesIn(field('Depends'))), t);
    const before = filesUnder(join(root, 'usr'));

    const installation = dpkg(root, '--install', deb);
    assert.equal(installation.status, 0, installation.stderr);
    assert.ok(existsSync(join(root, 'usr/share/man/man1/larkspur-mcp.1.gz')));
    const dataRoot = householdInRoot(root, t);
    const [command, ...args] = inRoot(root, '/usr/bin/larkspur-mcp', ['--data-root', dataRoot]);
    const { tools } = await introduction(command, args);
    for (const program of programs) {
      const [start, ...helpless] = inRoot(root, `/usr/bin/${program}`, ['--help']);
      assert.match(output(start, helpless), /--data-root/);
    }
    const removal = dpkg(root, '--purge', 'larkspur-mcp');

    assert.ok(tools.length > 0);
    assert.equal(removal.status, 0, removal.stderr);
    assert.deepEqual(filesUnder(join(root, 'usr')), before);
  });

  test('is refused where a library is missing', (t) => {
    const names = closureOf(namesIn(field('Depends')));
    const root = rootWith(
      names.filter((name) => name !== 'libsqlite3-0'),
      t,
    );

    const { status, stderr } = dpkg(root, '--install', deb);

    assert.notEqual(status, 0);
    assert.match(stderr, /depends on libsqlite3-0/);
  });

  test('is packed to the same bytes again, and so is the archive', (t) => {
    const folder = temporaryFolder(t);
    const list = ['--list', '--verbose', '--full-time', '--utc', '--file'];
    const [day, clock] = output('tar', [...list, packageWith('.tar.gz')])
      .match(/(\d{4}-\d\d-\d\d) (\d\d:\d\d:\d\d)/)
      .slice(1);
    const moment = Date.parse(`${day}T${clock}Z`) / 1000;

    output(cpack, ['--config', join(build, 'CPackConfig.cmake'), '-B', folder], {
      env: { SOURCE_DATE_EPOCH: String(moment) },
    });

    for (const path of [deb, packageWith('.tar.gz')]) {
      assert.ok(readFileSync(join(folder, basename(path))).equals(readFileSync(path)), path);
    }
  });
});
