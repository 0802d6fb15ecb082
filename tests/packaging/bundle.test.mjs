// The one-click client bundle: what the packing tool checks, and what it does not.

import assert from 'node:assert/strict';
import { accessSync, constants, cpSync, existsSync, readFileSync, writeFileSync } from 'node:fs';
import { basename, join } from 'node:path';
import { after, before, describe, test } from 'node:test';

import {
  ending,
  filesUnder,
  introduction,
  introductionAlone,
  newHousehold,
  output,
  packageWith,
  source,
  temporaryFolder,
  version,
} from './support.mjs';

const tool = join(source, 'packaging/bundle/node_modules/@anthropic-ai/mcpb/dist/cli/cli.js');

describe('the bundle', () => {
  const bundle = packageWith('.mcpb');
  const folder = temporaryFolder({ after });
  let manifest;

  before(() => {
    output('unzip', ['-q', bundle, '-d', folder]);
    manifest = JSON.parse(readFileSync(join(folder, 'manifest.json'), 'utf8'));
  });

  /** Command and arguments as a client makes them of the manifest for a person's own `dataRoot`. */
  function order(dataRoot) {
    const filled = (text) =>
      text.replaceAll('${__dirname}', folder).replaceAll('${user_config.data_root}', dataRoot);
    const { command, args } = manifest.server.mcp_config;
    return [filled(command), args.map(filled)];
  }

  test('has a manifest that the official tool finds valid', () => {
    const { status, stdout, stderr } = ending('node', [tool, 'validate', folder]);

    assert.equal(status, 0, stdout + stderr);
    assert.match(stdout, /validation passes/i);
  });

  test('would not pass with a manifest that is wrong', (t) => {
    const broken = temporaryFolder(t);
    const server = { ...manifest.server, type: 'program' };
    writeFileSync(join(broken, 'manifest.json'), JSON.stringify({ ...manifest, server }));

    assert.notEqual(ending('node', [tool, 'validate', broken]).status, 0);
  });

  test('is one of a program, for this platform and of this version', () => {
    assert.equal(manifest.server.type, 'binary');
    assert.deepEqual(manifest.compatibility.platforms, [process.platform]);
    assert.equal(manifest.version, version);
    assert.ok(basename(bundle).startsWith(`larkspur-mcp-${version}-${process.platform}-`));
  });

  test('holds the program, the manifest and documents, and nothing else', () => {
    const others = filesUnder(folder).filter((name) => !name.startsWith('doc/'));

    assert.deepEqual(others, ['manifest.json', 'server/larkspur-mcp']);
    assert.ok(existsSync(join(folder, 'doc/copyright')));
    assert.ok(existsSync(join(folder, 'doc/third-party/libsodium')));
  });

  test('starts its entry point, which a user may execute', () => {
    const entry = join(folder, manifest.server.entry_point);

    accessSync(entry, constants.X_OK);
    assert.equal(order('')[0], entry);
  });

  const alone = { skip: process.platform !== 'linux' };
  test('answers where nothing but the C library is installed', alone, async (t) => {
    const { tools } = await introductionAlone(join(folder, manifest.server.entry_point), t);

    assert.ok(tools.length > 0);
  });

  test('asks for the data folder and hands it over in the arguments', () => {
    const { data_root: asked, ...others } = manifest.user_config;

    assert.deepEqual(others, {});
    assert.deepEqual([asked.type, asked.required], ['directory', true]);
    assert.equal(asked.default, '${HOME}/Library/Application Support/Larkspur');
    assert.deepEqual(order('/a folder')[1], ['--data-root', '/a folder']);
  });

  test('answers, and names its tools as the server does', async (t) => {
    const [command, args] = order(newHousehold(temporaryFolder(t)));

    const { tools } = await introduction(command, args);

    assert.deepEqual(
      manifest.tools.map(({ name }) => name),
      tools.map(({ name }) => name),
    );
  });

  test('is packed to the same bytes again', (t) => {
    const scratch = temporaryFolder(t);
    const stage = join(scratch, 'stage');
    cpSync(folder, stage, { recursive: true });
    const again = join(scratch, 'again.mcpb');
    const fixedTime = join(source, 'packaging/bundle/fixed-time.cjs');

    output('node', ['--require', fixedTime, tool, 'pack', stage, again], {
      env: { SOURCE_DATE_EPOCH: String(zipMoment(bundle)), TZ: 'UTC0' },
    });

    assert.ok(readFileSync(again).equals(readFileSync(bundle)));
  });
});

/** Seconds since 1970 of the first file in a zip, whose date is taken as one of UTC. */
function zipMoment(path) {
  const header = readFileSync(path).subarray(0, 30);
  const time = header.readUInt16LE(10);
  const date = header.readUInt16LE(12);
  const day = [1980 + (date >> 9), ((date >> 5) & 15) - 1, date & 31];
  const clock = [time >> 11, (time >> 5) & 63, (time & 31) * 2];
  return Date.UTC(...day, ...clock) / 1000;
}
