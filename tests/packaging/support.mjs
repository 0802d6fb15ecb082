// What the tests of the packages share: the packages, folders that pass for a machine of their own,
// and a conversation with a server that lies anywhere.

import assert from 'node:assert/strict';
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import {
  copyFileSync,
  cpSync,
  existsSync,
  lstatSync,
  mkdirSync,
  mkdtempSync,
  readdirSync,
  readlinkSync,
  rmSync,
  symlinkSync,
  writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, dirname, join, relative } from 'node:path';

function setting(name) {
  const value = process.env[name];
  if (!value) throw new Error(`${name} must be set, as the build does for its tests`);
  return value;
}

export const build = setting('LARKSPUR_BUILD');
export const source = setting('LARKSPUR_SOURCE');
export const version = setting('LARKSPUR_VERSION');
export const cmake = setting('LARKSPUR_CMAKE');
export const cpack = setting('LARKSPUR_CPACK');
export const programs = setting('LARKSPUR_PROGRAMS').split(',');
export const packages = join(build, 'packages');
const sample = setting('LARKSPUR_SAMPLE');

/** The one package whose name ends in `ending`. */
export function packageWith(ending) {
  const names = readdirSync(packages).filter((name) => name.endsWith(ending));
  assert.equal(names.length, 1, `one package *${ending} in ${packages}`);
  return join(packages, names[0]);
}

/** A new empty folder that disappears when `test` ends. */
export function temporaryFolder(test) {
  const folder = mkdtempSync(join(tmpdir(), 'larkspur-packages-'));
  test.after(() => rmSync(folder, { recursive: true, force: true }));
  return folder;
}

// The tools of an administrator, dpkg's helpers among them, need not be in a user's path.
const environment = {
  PATH: `${process.env.PATH}:/usr/sbin:/sbin`,
  HOME: tmpdir(),
  LC_ALL: 'C.UTF-8',
};

/** Standard output of a command that must succeed. */
export function output(command, args, options = {}) {
  const env = { ...environment, ...options.env };
  return execFileSync(command, args, { encoding: 'utf8', stdio: 'pipe', ...options, env });
}

/** Status and both outputs of a command that may fail. */
export function ending(command, args) {
  return spawnSync(command, args, { encoding: 'utf8', env: environment });
}

/** All files under `folder`, as sorted paths relative to it. */
export function filesUnder(folder) {
  return readdirSync(folder, { recursive: true })
    .filter((name) => !lstatSync(join(folder, name)).isDirectory())
    .sort();
}

/** The data root of a new household of one, Ann, in `folder`. */
export function newHousehold(folder) {
  const dataRoot = join(folder, 'household');
  const size = ['--members', '1', '--years', '1', '--records', '5000', '--seed', '7'];
  output(sample, ['--out', dataRoot, ...size, '--today', '2024-03-31'], {
    env: { LANG: 'en_US.UTF-8' },
  });
  return dataRoot;
}

/**
 * Sends `requests`, pairs of method and parameters, to the server that `command` with `args` starts
 * and returns the results; the server must answer each, say nothing else and end well.
 */
export async function conversation(command, args, requests) {
  const env = { PATH: environment.PATH, HOME: environment.HOME, LC_ALL: 'en_US.UTF-8', TZ: 'UTC' };
  const server = spawn(command, args, { env });
  let replies = '';
  let errors = '';
  server.stdout.setEncoding('utf8').on('data', (chunk) => (replies += chunk));
  server.stderr.setEncoding('utf8').on('data', (chunk) => (errors += chunk));
  server.stdin.on('error', () => {}); // Its status says more.
  const lines = requests.map(([method, params], index) =>
    JSON.stringify({ jsonrpc: '2.0', id: index + 1, method, params }),
  );
  server.stdin.end(`${lines.join('\n')}\n`);
  const status = await new Promise((resolve, reject) => {
    server.on('error', reject);
    server.on('close', resolve);
  });

  assert.equal(errors, '');
  assert.equal(status, 0);
  return replies
    .trimEnd()
    .split('\n')
    .map((line, index) => {
      const { id, result, error } = JSON.parse(line);
      assert.equal(error, undefined);
      assert.equal(id, index + 1);
      return result;
    });
}

export const clientsFirst = [
  'initialize',
  {
    protocolVersion: '2024-11-05',
    capabilities: {},
    clientInfo: { name: 'packages', version: '1.0' },
  },
];

/** Holds a conversation about Ann and returns what the server says of itself and of its tools. */
export async function introduction(command, args) {
  const [{ serverInfo }, { tools }, persons, overview] = await conversation(command, args, [
    clientsFirst,
    ['tools/list'],
    ['tools/call', { name: 'list_persons', arguments: {} }],
    ['tools/call', { name: 'get_overview', arguments: { person: 'Ann' } }],
  ]);

  assert.equal(serverInfo.name, 'larkspur');
  assert.match(persons.content[0].text, /\bAnn\b/);
  assert.match(overview.content[0].text, /\bAnn\b/);
  return { serverInfo, tools };
}

/** Copies the file at `path` to the same place under `root`, and what it points to as well. */
export function copyIntoRoot(root, path) {
  const copy = join(root, path);
  if (existsSync(copy)) return;
  mkdirSync(dirname(copy), { recursive: true });
  if (lstatSync(path).isSymbolicLink()) {
    const target = readlinkSync(path);
    symlinkSync(target, copy);
    copyIntoRoot(root, join(target.startsWith('/') ? '/' : dirname(path), target));
  } else {
    copyFileSync(path, copy);
  }
}

/** An empty root folder, but for the links that this machine has in place of /lib and the like. */
export function newRoot(test) {
  const root = join(temporaryFolder(test), 'root');
  for (const name of ['tmp', 'dev']) mkdirSync(join(root, name), { recursive: true });
  // Making the device takes more rights than these tests have; a program that opens it is content.
  writeFileSync(join(root, 'dev/null'), '');
  for (const name of ['lib', 'lib64', 'bin', 'sbin']) {
    const path = `/${name}`;
    if (!existsSync(path) || !lstatSync(path).isSymbolicLink()) continue;
    const target = readlinkSync(path);
    mkdirSync(join(root, relative('/', join('/', target))), { recursive: true });
    symlinkSync(target, join(root, name));
  }
  return root;
}

/** A household under `root` and the path it has for a program that sees nothing else. */
export function householdInRoot(root, test) {
  const dataRoot = newHousehold(temporaryFolder(test));
  // The roster names its databases by their full paths, so the copy lies at the same one.
  cpSync(dataRoot, join(root, dataRoot), { recursive: true });
  return dataRoot;
}

/** `command` with `args` as someone runs it for whom `root` is all there is. */
export function inRoot(root, command, args) {
  const change = ['chroot', root, command, ...args];
  if (process.getuid() === 0) return change;
  return ['unshare', '--map-root-user', ...change];
}

/**
 * What the server `program` says of itself where it is alone with the C library, the only one that
 * it may ask for.
 */
export async function introductionAlone(program, test) {
  const root = newRoot(test);
  const libraries = loadedLibraries(program);
  assert.deepEqual(
    libraries.map((path) => basename(path)).filter((name) => !ofTheSystem.test(name)),
    [],
  );
  libraries.forEach((library) => copyIntoRoot(root, library));
  copyFileSync(program, join(root, 'larkspur-mcp'));
  const dataRoot = householdInRoot(root, test);

  const [command, ...args] = inRoot(root, '/larkspur-mcp', ['--data-root', dataRoot]);
  return introduction(command, args);
}

/** The C library and the loader, by the names that programs ask for them. */
export const ofTheSystem = /^(libc\.so\.6|libm\.so\.6|ld-linux.*)$/;

/** The libraries that `program` names as needed. */
export function neededLibraries(program) {
  const section = output('readelf', ['--wide', '--dynamic', program]);
  return Array.from(section.matchAll(/\(NEEDED\).*\[(.*)\]/g), ([, name]) => name).sort();
}

/** The paths of the libraries, the loader included, that `program` would be given here. */
function loadedLibraries(program) {
  const lines = output('ldd', [program]);
  return Array.from(lines.matchAll(/(?:=> |^\t)(\/\S+) \(0x/gm), ([, path]) => path);
}
