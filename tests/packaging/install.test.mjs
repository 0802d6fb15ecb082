// What `cmake --install` puts in place.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { gunzipSync } from 'node:zlib';

import { assertHardened, assertNamesNoBuildFolder } from './hardening.mjs';
import {
  build,
  cmake,
  clientsFirst,
  conversation,
  ending,
  filesUnder,
  introduction,
  newHousehold,
  output,
  programs,
  source,
  temporaryFolder,
  version,
} from './support.mjs';

const pageOf = (program) => `share/man/man1/${program}.1.gz`;
const documents = 'share/doc/larkspur-mcp';

describe('the installation', () => {
  const prefix = join(temporaryFolder({ after }), 'prefix');
  const installed = (path) => join(prefix, path);
  const text = (path) => gunzipSync(readFileSync(installed(path))).toString();

  before(() => {
    output(cmake, ['--install', build, '--prefix', prefix]);
  });

  test('has the programs, a manual page for each and documents, and nothing else', () => {
    const expected = [
      ...programs.flatMap((program) => [`bin/${program}`, pageOf(program)]),
      ...['README.md', 'changelog.gz', 'copyright'].map((name) => `${documents}/${name}`),
    ];

    const files = filesUnder(prefix);

    const mayBe = ['README.zh.md', 'SECURITY.md'].map((name) => `${documents}/${name}`);
    assert.deepEqual(
      files.filter((file) => !mayBe.includes(file)),
      expected.sort(),
    );
  });

  test('answers questions about a household', async (t) => {
    const dataRoot = newHousehold(temporaryFolder(t));

    const { tools } = await introduction(installed('bin/larkspur-mcp'), ['--data-root', dataRoot]);

    assert.ok(tools.length > 0);
  });

  for (const program of programs) {
    test(`${program} is hardened`, { skip: process.platform !== 'linux' }, () => {
      assertHardened(installed(`bin/${program}`));
    });

    test(`${program} names no folder of the machine that built it`, () => {
      assertNamesNoBuildFolder(installed(`bin/${program}`));
    });

    test(`the manual page of ${program} is set without a warning`, () => {
      const env = { MANWIDTH: '80', MANPAGER: 'cat' };

      const page = output('man', ['--local-file', installed(pageOf(program))], { env });
      const { stdout, stderr, status } = ending('man', [
        '--warnings',
        '--encoding=UTF-8',
        '--local-file',
        installed(pageOf(program)),
      ]);

      assert.deepEqual({ stderr, status }, { stderr: '', status: 0 });
      assert.match(page, /NAME\n +larkspur-/);
      assert.ok(stdout.includes(`${program}(1)`.toUpperCase()));
    });

    test(`the manual page of ${program} tells of every option in its usage text`, () => {
      const usage = output(installed(`bin/${program}`), ['--help']);
      // The manual's language writes "--data-root" as "Fl -data-root".
      const page = text(pageOf(program)).replaceAll(/\bFl -/g, '--');

      const options = new Set(usage.match(/--[a-z][-a-z]+/g));

      assert.ok(options.has('--data-root'));
      for (const option of options) assert.ok(page.includes(option), `no word on ${option}`);
    });

    test(`the manual page of ${program} tells of the environment under its own heading`, () => {
      const [before, environment] = text(pageOf(program)).split('\n.Sh ENVIRONMENT\n');

      assert.ok(environment !== undefined, 'no such heading');
      assert.match(environment.split('\n.Sh ')[0], /^\.(It )?Ev TZ/m);
      assert.doesNotMatch(before, /^Messages are in Chinese or English/m);
    });

    test(`the manual page of ${program} bears the version`, () => {
      assert.ok(text(pageOf(program)).includes(`\n.Os "larkspur-mcp ${version}"\n`));
    });
  }

  test('the server has no option for its version, as its manual page says', () => {
    const { status, stdout } = ending(installed('bin/larkspur-mcp'), ['--version']);

    assert.deepEqual({ status, stdout }, { status: 2, stdout: '' });
    assert.match(text(pageOf('larkspur-mcp')), /There is no\n\.Fl -version :/);
  });

  const importer = programs.includes('larkspur-import');
  test('the import program tells the version', { skip: !importer && 'not built' }, () => {
    const said = output(installed('bin/larkspur-import'), ['--version']);

    assert.ok(said.split(/\s+/).includes(version), said);
  });

  test('the version begins with the one that the server tells its client', async (t) => {
    const args = ['--data-root', temporaryFolder(t)];

    const [{ serverInfo }] = await conversation(installed('bin/larkspur-mcp'), args, [
      clientsFirst,
    ]);

    assert.ok(`${version}.`.startsWith(`${serverInfo.version}.`), serverInfo.version);
  });

  test('the newest changes are those of the version', () => {
    const [, heading] = /^## (\S+)/m.exec(readFileSync(join(source, 'CHANGELOG.md'), 'utf8'));

    assert.equal(heading.replace(/,$/, ''), version);
    assert.ok(text(`${documents}/changelog.gz`).includes(`\n## ${heading}`));
  });

  test('says that no licence has been chosen', () => {
    assert.match(readFileSync(installed(`${documents}/copyright`), 'utf8'), /^No licence has been/);
  });
});
