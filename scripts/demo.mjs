// Makes a small sample household, or imports the export of an iPhone's Health app, and holds a
// conversation with the server about it, once in English and once in Chinese, printed for a person
// to read.
//
//   node scripts/demo.mjs <folder of the programs> <folder to work in> [<export> [<time zone>]]
//
// Needs nothing but Node. Ends with status 1 when a reply is not of the kind its step expects.

import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, mkdirSync, readFileSync, renameSync, rmSync } from 'node:fs';
import { homedir } from 'node:os';
import { join, resolve } from 'node:path';
import { createInterface } from 'node:readline';

const [programs, folder, named, zone] = process.argv.slice(2);
// Not every shell expands the tilde of `make demo EXPORT=~/export.zip`.
const exported = named?.replace(/^~(?=\/|$)/, homedir());
if (!programs || !folder) {
  console.error(
    'usage: node scripts/demo.mjs <folder of the programs> <folder to work in> [<export> [<time zone>]]',
  );
  process.exit(2);
}
const hour = 3_600_000;

/** The sample household. Its last day is today, because the server goes by the real clock. */
const sample = {
  dataRoot: resolve(folder, 'household'),
  // Ann's home, so that her nights read as nights. It is eight hours ahead of UTC all year.
  environment: { TZ: 'Asia/Shanghai' },
  person: 'Ann',
  id: 'ann-01',
  others: [
    call('And Ben, in New York?', '在纽约的 Ben 呢？', 'get_overview', { person: 'Ben' }),
    call('And 小美?', '小美呢？', 'get_overview', { person: '小美' }),
  ],

  /** Makes the data root and returns the last day with data. */
  make() {
    const today = new Date(Date.now() + 8 * hour).toISOString().slice(0, 10);
    const size = ['--members', '3', '--years', '2', '--records', '200000', '--seed', '1'];
    const args = ['--out', this.dataRoot, ...size, '--today', today];
    const stdio = ['ignore', 'ignore', 'inherit'];
    execFileSync(join(programs, 'larkspur-sample'), args, { stdio });
    return today;
  },
};

/**
 * The member of an imported export. The days end with the export, which may be old. The server
 * tells nights in the zone of the import: the named one, else the machine's.
 */
const imported = {
  dataRoot: resolve(folder, 'imported'),
  environment: zone ? { TZ: zone } : process.env.TZ ? { TZ: process.env.TZ } : {},
  person: 'Me',
  id: 'me',
  others: [],

  make() {
    const who = ['--member', this.person, '--id', this.id];
    const where = zone ? ['--time-zone', zone] : [];
    const args = ['--data-root', this.dataRoot, ...who, ...where, resolve(exported)];
    const { status } = spawnSync(join(programs, 'larkspur-import'), args, {
      stdio: ['ignore', 'inherit', 'inherit'],
      env: { ...process.env, ...this.environment },
    });
    if (status !== 0) {
      const how = 'In this demo a time zone is added as: make demo EXPORT=... ZONE=Area/City';
      throw new Error(zone ? 'The import failed.' : `The import failed. ${how}`);
    }
    const roster = JSON.parse(readFileSync(join(this.dataRoot, 'members.json'), 'utf8'));
    const { lastSyncAt = Date.now() / 1000 } = roster.members[0];
    const { TZ: timeZone } = this.environment;
    const parts = { timeZone, year: 'numeric', month: '2-digit', day: '2-digit' };
    // Swedes write days as we do.
    return new Intl.DateTimeFormat('sv-SE', parts).format(new Date(lastSyncAt * 1000));
  },
};

const household = exported ? imported : sample;
const { dataRoot, person } = household;

const languages = [
  { name: 'English', key: 'en', locale: 'en_US' },
  { name: '中文', key: 'zh', locale: 'zh_CN' },
];

/**
 * The conversation, step by step: a person's question, the request, and how to show the result.
 * The later questions about workouts need names from the earlier answers. Without workouts they are
 * left out. `today` is the last day with data.
 */
function conversation(today) {
  const day = (daysAgo) =>
    new Date(Date.parse(today) - daysAgo * 24 * hour).toISOString().slice(0, 10);
  const fortnight = { from: day(14), to: day(1) };
  const month = { from: day(30), to: day(0) };
  const periods = { a_from: day(30), a_to: day(1), b_from: day(60), b_to: day(31) };
  const trend = (metric) => ({ person, metric, ...fortnight });

  return [
    ask('Who are you?', '你是谁？', 'initialize', handshake(), introduction),
    ask('What can you do?', '你会什么？', 'tools/list', {}, toolList),
    call('Who lives here?', '家里有谁？', 'list_persons', {}),
    call(`How is ${person}?`, `${person} 怎么样？`, 'get_overview', { person }),
    ...household.others,
    call(`${person}: steps`, `${person} 的步数`, 'get_trend', trend('steps')),
    call(`${person}: sleep`, `${person} 的睡眠`, 'get_trend', trend('sleep')),
    call(`${person}: yesterday`, `${person} 的昨天`, 'get_day', { person, date: day(1) }),
    call('More steps than before?', '比之前走得多吗？', 'compare_periods', {
      person,
      metric: 'steps',
      ...periods,
    }),
    call('Which workouts?', '练了什么？', 'get_workouts', { person, ...month, limit: 2 }),
    call('The favourite, oldest first', '最常练的，从最早的开始', 'get_workouts', ({ activity }) =>
      activity && { person, ...month, activity_type: activity, order: 'asc', limit: 1 },
    ),
    call(
      'The heart during the workout above',
      '上面那次训练的心率',
      'get_workout_heart_rate',
      ({ workoutId }) => workoutId && { person, workout_id: workoutId, limit: 5 },
      outline,
    ),
    ask('What is there to read?', '有什么可读的？', 'resources/list', {}, resourceList),
    ask(
      'Read one',
      '读一份',
      'resources/read',
      { uri: `larkspur://${household.id}/overview` },
      beginning,
    ),
    ask('What should I ask?', '我该问什么？', 'prompts/list', {}, promptList),
    ask('Ask the first', '就问第一个', 'prompts/get', { name: 'how_am_i' }, promptText),
    { ...call('How is Zoe?', 'Zoe 怎么样？', 'get_overview', { person: 'Zoe' }), refusal: -32602 },
  ];
}

function ask(en, zh, method, params, show) {
  return { about: { en, zh }, method, params: () => params, show };
}

/**
 * A tool call. `args` may be a function of the names from earlier answers, see `remember`. If it
 * returns nothing, the call is left out.
 */
function call(en, zh, name, args, show = (text) => text) {
  const argsFrom = typeof args === 'function' ? args : () => args;
  return {
    about: { en, zh },
    method: 'tools/call',
    params: (known) => {
      const values = argsFrom(known);
      return values && { name, arguments: values };
    },
    show: ({ content }) => show(content.map(({ text }) => text).join('\n')),
  };
}

function handshake() {
  const clientInfo = { name: 'demo', version: '1.0' };
  return { protocolVersion: '2024-11-05', capabilities: {}, clientInfo };
}

function introduction({ serverInfo, protocolVersion, instructions }) {
  const who = `${serverInfo.name} ${serverInfo.version}, MCP ${protocolVersion}`;
  return `${who}\n\n${instructions}`;
}

function table(rows) {
  const width = Math.max(...rows.map(([name]) => name.length));
  return rows.map(([name, text]) => `${name.padEnd(width)}  ${text}`).join('\n');
}

function toolList({ tools }) {
  return table(tools.map(({ name, description }) => [name, firstSentence(description)]));
}

function firstSentence(text) {
  return /^.*?(?:。|\.(?= |$))/su.exec(text)?.[0] ?? text;
}

function resourceList({ resources }) {
  return table(resources.map(({ uri, name }) => [uri, name]));
}

function promptList({ prompts }) {
  return table(prompts.map(({ name, description }) => [name, description]));
}

function promptText({ messages }) {
  return messages.map(({ role, content }) => `${role}: ${content.text}`).join('\n');
}

/** The first lines of a resource. Its text is that of get_overview, which was shown already. */
function beginning({ contents: [{ text }] }) {
  const lines = text.split('\n');
  return [...lines.slice(0, 4), `… (+${lines.length - 4})`].join('\n');
}

/** The heart rate of a workout: one key a line, and what a chart needs of every sample. */
function outline(json) {
  const { samples, ...rest } = JSON.parse(json);
  const lines = Object.entries(rest).map(([key, value]) => `${key}: ${JSON.stringify(value)}`);
  const rows = samples.map(
    ({ start, elapsed_seconds, bpm, segment }) =>
      `  start: ${start}, elapsed_seconds: ${elapsed_seconds}, bpm: ${bpm}, segment: ${segment}, …`,
  );
  return [...lines, 'samples:', ...rows].join('\n');
}

/** Keeps names for later steps: the most frequent activity; a workout, if possible with heart rate. */
function remember(known, text) {
  const withHeartRate = /^ {4}(?:Average heart rate|平均心率)[^·]*workout_id=(\w+)$/m;
  known.activity ??= /^(?:By activity|按运动类型): (.+?)×/m.exec(text)?.[1];
  known.workoutId = withHeartRate.exec(text)?.[1] ?? known.workoutId;
  known.workoutId ??= /workout_id=(\w+)/.exec(text)?.[1];
}

const longest = 140;
const bold = (text) => (process.stdout.isTTY ? `\x1b[1m${text}\x1b[0m` : text);
const dim = (text) => (process.stdout.isTTY ? `\x1b[2m${text}\x1b[0m` : text);
const indented = (text) => text.replace(/^(?=.)/gm, '    ');
const shortened = (text) => text.replace(new RegExp(`^(.{${longest}}).+$`, 'gmu'), '$1 …');

/**
 * Makes the household anew and returns the last day with data. The household of the previous demo
 * is set aside, and comes back if making a new one fails.
 */
function makeHousehold() {
  const before = `${dataRoot}.before`;
  const remove = (path) => rmSync(path, { recursive: true, force: true });
  mkdirSync(folder, { recursive: true });
  if (existsSync(dataRoot)) {
    remove(before);
    renameSync(dataRoot, before);
  }
  try {
    return household.make();
  } catch (error) {
    remove(dataRoot);
    if (existsSync(before)) renameSync(before, dataRoot);
    throw error;
  } finally {
    remove(before);
  }
}

/** The text to print for `reply`. Throws when it is not what `step` expects. */
function shown(step, reply) {
  if (reply.error) {
    const text = `error ${reply.error.code}: ${reply.error.message}`;
    if (reply.error.code !== step.refusal) throw new Error(`${step.about.en}: unexpected ${text}`);
    return text;
  }
  if (step.refusal) throw new Error(`${step.about.en}: answered, but a refusal was expected`);
  return step.show(reply.result);
}

/** One server from its start to the end of its input, taken through all steps. */
async function converse(steps, { name, key, locale }) {
  console.log(`\n${bold(`==== ${name} (LANGUAGE=${locale}) ====`)}`);
  const { HOME, PATH, USER } = process.env;
  const server = spawn(join(resolve(programs), 'larkspur-mcp'), ['--data-root', dataRoot], {
    // macOS heeds LANGUAGE alone; the digits of other systems follow LANG.
    env: { HOME, PATH, USER, LANGUAGE: locale, LANG: `${locale}.UTF-8`, ...household.environment },
    stdio: ['pipe', 'pipe', 'inherit'],
  });
  const closed = once(server, 'close');
  const replies = createInterface({ input: server.stdout })[Symbol.asyncIterator]();
  const known = {};

  for (const [index, step] of steps.entries()) {
    const { method } = step;
    const params = step.params(known);
    if (!params) continue;
    console.log(`\n${bold(step.about[key])}\n${dim(`→ ${method} ${JSON.stringify(params)}`)}`);
    server.stdin.write(`${JSON.stringify({ jsonrpc: '2.0', id: index + 1, method, params })}\n`);

    const { value: line, done } = await replies.next();
    if (done) throw new Error(`${step.about.en}: the server ended without a reply`);
    const text = shown(step, JSON.parse(line));
    remember(known, text);
    console.log(indented(shortened(text)));
  }

  server.stdin.end();
  const [status] = await closed;
  if (status !== 0) throw new Error(`the server ended with status ${status}`);
}

try {
  const steps = conversation(makeHousehold());
  for (const language of languages) await converse(steps, language);
} catch (error) {
  // A program that ended by itself has printed its own reason.
  if (error.status == null) console.error(`demo: ${error.message}`);
  process.exit(1);
}
