// Makes a small sample household and holds a conversation with the server about it, once in English
// and once in Chinese, printed for a person to read.
//
//   node scripts/demo.mjs <folder of the programs> <folder to work in>
//
// Needs nothing but Node. Ends with status 1 when a reply is not of the kind its step expects.

import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdirSync, rmSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { createInterface } from 'node:readline';

const [programs, folder] = process.argv.slice(2);
if (!programs || !folder) {
  console.error('usage: node scripts/demo.mjs <folder of the programs> <folder to work in>');
  process.exit(2);
}
const dataRoot = resolve(folder, 'household');

// The household's last day. Fixed, so that the conversation is the same every time.
const today = '2024-03-31';
const fortnight = { from: '2024-03-18', to: '2024-03-31' };

const languages = [
  { name: 'English', locale: 'en_US.UTF-8' },
  { name: '中文', locale: 'zh_CN.UTF-8' },
];

// The conversation, one step a line: what it is about, the method, its params, how to show the
// result, and the error code when the point of the step is a refusal.
const steps = [
  { about: 'Shake hands', method: 'initialize', params: handshake(), show: introduction },
  { about: 'What can it do?', method: 'tools/list', show: toolList },
  toolCall("Ann's steps", 'get_trend', { person: 'Ann', metric: 'steps', ...fortnight }),
  toolCall("Ann's sleep", 'get_trend', { person: 'Ann', metric: 'sleep', ...fortnight }),
  toolCall('Someone else', 'get_trend', { person: 'Zoe', metric: 'steps' }, { error: -32602 }),
];

function handshake() {
  const clientInfo = { name: 'demo', version: '1.0' };
  return { protocolVersion: '2024-11-05', capabilities: {}, clientInfo };
}

function toolCall(about, name, args, expected = {}) {
  const params = { name, arguments: args };
  return { about, method: 'tools/call', params, show: toolText, ...expected };
}

function introduction({ serverInfo, protocolVersion, instructions }) {
  const who = `${serverInfo.name} ${serverInfo.version}, MCP ${protocolVersion}`;
  return `${who}\n\n${instructions}`;
}

function toolList({ tools }) {
  const width = Math.max(...tools.map(({ name }) => name.length));
  return tools
    .map(({ name, description }) => `${name.padEnd(width)}  ${firstSentence(description)}`)
    .join('\n');
}

function firstSentence(text) {
  return /^.*?(?:。|\.(?= |$))/su.exec(text)?.[0] ?? text;
}

function toolText({ content }) {
  return content.map(({ text }) => text).join('\n');
}

const bold = (text) => (process.stdout.isTTY ? `\x1b[1m${text}\x1b[0m` : text);
const dim = (text) => (process.stdout.isTTY ? `\x1b[2m${text}\x1b[0m` : text);
const indented = (text) => text.replace(/^(?=.)/gm, '    ');

function makeHousehold() {
  // The household of the demo before goes first: the sample program spares what exists.
  rmSync(dataRoot, { recursive: true, force: true });
  mkdirSync(folder, { recursive: true });
  const size = ['--members', '3', '--years', '1', '--records', '120000', '--seed', '1'];
  execFileSync(join(programs, 'larkspur-sample'), ['--out', dataRoot, ...size, '--today', today], {
    stdio: ['ignore', 'ignore', 'inherit'],
  });
}

/** The text to print for `reply`. Throws when it is not what `step` expects. */
function shown(step, reply) {
  if (reply.error) {
    const text = `error ${reply.error.code}: ${reply.error.message}`;
    if (reply.error.code !== step.error) throw new Error(`${step.about}: unexpected ${text}`);
    return text;
  }
  if (step.error) throw new Error(`${step.about}: answered, but error ${step.error} was expected`);
  return step.show(reply.result);
}

/** One server from its start to the end of its input, taken through all steps. */
async function converse({ name, locale }) {
  console.log(`\n${bold(`==== ${name} (LANG=${locale}) ====`)}`);
  const { HOME, PATH, USER } = process.env;
  const server = spawn(join(resolve(programs), 'larkspur-mcp'), ['--data-root', dataRoot], {
    env: { HOME, PATH, USER, LANG: locale },
    stdio: ['pipe', 'pipe', 'inherit'],
  });
  const closed = once(server, 'close');
  const replies = createInterface({ input: server.stdout })[Symbol.asyncIterator]();

  for (const [index, step] of steps.entries()) {
    const { method, params } = step;
    const request = JSON.stringify({ jsonrpc: '2.0', id: index + 1, method, params });
    console.log(`\n${bold(step.about)}\n${dim(`→ ${request}`)}`);
    server.stdin.write(`${request}\n`);

    const { value: line, done } = await replies.next();
    if (done) throw new Error(`${step.about}: the server ended without a reply`);
    console.log(indented(shown(step, JSON.parse(line))));
  }

  server.stdin.end();
  const [status] = await closed;
  if (status !== 0) throw new Error(`the server ended with status ${status}`);
}

try {
  makeHousehold();
  for (const language of languages) await converse(language);
} catch (error) {
  console.error(`demo: ${error.message}`);
  process.exit(1);
}
