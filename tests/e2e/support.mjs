// What the tests share: a sample household on disk, and the built server in a chosen environment.

import { execFileSync, spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';

export const server = programFrom('LARKSPUR_MCP');
const sample = programFrom('LARKSPUR_SAMPLE');

/** The last day of the sample household, so that no test depends on the day it runs. */
const today = '2024-03-31';

function programFrom(variable) {
  const path = process.env[variable];
  if (!path) throw new Error(`${variable} must hold the path of the built program`);
  return path;
}

const fileOfExamples = new URL('../../examples/calls.json', import.meta.url);

/**
 * What may be asked of each tool, in the order of the catalogue.
 * @type {{tool: string, about: string, calls: Object<string, Object>}[]}
 */
export const examples = JSON.parse(readFileSync(fileOfExamples, 'utf8'));

/** A new empty folder that disappears when `test` ends (a test context or a suite's `after`). */
export function temporaryFolder(test) {
  const folder = mkdtempSync(join(tmpdir(), 'larkspur-e2e-'));
  test.after(() => rmSync(folder, { recursive: true, force: true }));
  return folder;
}

const reports = new Map();

/** Data root of a new household of Ann, Ben and 小美 (who has no records yet), always the same. */
export function newHousehold(test) {
  const dataRoot = join(temporaryFolder(test), 'household');
  const size = ['--members', '3', '--years', '1', '--records', '20000', '--seed', '7'];
  const report = execFileSync(sample, ['--out', dataRoot, ...size, '--today', today], {
    encoding: 'utf8',
    stdio: 'pipe',
  });
  reports.set(dataRoot, report);
  return dataRoot;
}

/**
 * The members of a new household, by what the sample program says it wrote: a count to hold the
 * server's against.
 * @returns {{name: string, id: string, records: number, workouts: number}[]}
 */
export function membersOf(dataRoot) {
  const line = /^(.+) \((.+)\): ([\d,]+) records, ([\d,]+) workouts$/gm;
  return [...reports.get(dataRoot).matchAll(line)].map(([, name, id, records, workouts]) => ({
    name,
    id,
    records: numberIn(records),
    workouts: numberIn(workouts),
  }));
}

let shared;

/** One household for all tests of a file, since the server changes nothing but its access log. */
export function household() {
  shared ??= newHousehold({ after: (cleanUp) => process.on('exit', cleanUp) });
  return shared;
}

/** What a desktop hands to a program it starts: nothing says which language or time zone to use. */
export function bareEnvironment() {
  const { HOME = tmpdir(), PATH, USER = 'somebody' } = process.env;
  return { HOME, PATH, USER };
}

/** macOS heeds LANGUAGE alone; the digits of other systems follow LANG. */
function speaking(locale) {
  return { LANGUAGE: locale, LANG: `${locale}.UTF-8` };
}

/** The environment of an English-speaking user in UTC, so that no answer depends on the machine. */
export function environment(extra = {}) {
  return { ...bareEnvironment(), ...speaking('en_US'), TZ: 'UTC', ...extra };
}

/** The environment of a Chinese-speaking user in UTC. */
export const chinese = environment(speaking('zh_CN'));

/**
 * An MCP client that is connected to a server of its own. `seen` collects what the server lets slip
 * past the client: its protocol version and its standard error.
 */
export async function connect(test, dataRoot, { env = environment(), name = 'e2e' } = {}) {
  // The transport adds variables of its own choice; `env -i` makes the environment exactly ours.
  const assignments = Object.entries(env).map(([key, value]) => `${key}=${value}`);
  const transport = new StdioClientTransport({
    command: 'env',
    args: ['-i', ...assignments, server, '--data-root', dataRoot],
    stderr: 'pipe',
  });
  const seen = { protocolVersion: undefined, stderr: '' };
  transport.stderr.on('data', (chunk) => (seen.stderr += chunk));
  transport.setProtocolVersion = (version) => (seen.protocolVersion = version);

  const client = new Client({ name, version: '1.0.0' });
  // Before connecting, so that a server that cannot even shake hands is stopped as well.
  test.after(() => client.close());
  await client.connect(transport, { timeout: 10_000 });
  return { client, seen };
}

/** The one text of a tool's answer. */
export function textOf(result) {
  if (result.content.length !== 1 || result.content[0].type !== 'text') {
    throw new Error(`not one text: ${JSON.stringify(result.content)}`);
  }
  return result.content[0].text;
}

/** The text with which the tool `name` answers `client`. */
export async function answer(client, name, args = {}) {
  return textOf(await client.callTool({ name, arguments: args }));
}

/** A number as the answers show it, "12,345.6", without its grouping. */
export function numberIn(text) {
  return Number(text.replaceAll(',', ''));
}

/**
 * Runs the server with `args` on `input` to its end, without a client in between.
 * @returns {Promise<{status: ?number, signal: ?string, stdout: string, stderr: string}>}
 */
export function run(args, { input = '', env = environment(), cwd } = {}) {
  return new Promise((resolve, reject) => {
    const child = spawn(server, args, { env, cwd });
    let stdout = '';
    let stderr = '';
    child.stdout.setEncoding('utf8').on('data', (chunk) => (stdout += chunk));
    child.stderr.setEncoding('utf8').on('data', (chunk) => (stderr += chunk));
    child.on('error', reject);
    child.on('close', (status, signal) => resolve({ status, signal, stdout, stderr }));
    // A server that ends on its command line closes its input before everything is written.
    child.stdin.on('error', () => {});
    child.stdin.end(input);
  });
}

/** Requests as the lines a client would send, ids counted from 1. */
export function requestLines(...requests) {
  return requests
    .map(([method, params], index) =>
      JSON.stringify({ jsonrpc: '2.0', id: index + 1, method, params }),
    )
    .map((line) => `${line}\n`)
    .join('');
}
