// The built server as a process: command line, streams, exit status, files and neighbours.

import assert from 'node:assert/strict';
import { existsSync, readFileSync, statSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';

import {
  bareEnvironment,
  connect,
  household,
  newHousehold,
  requestLines,
  run,
  temporaryFolder,
  textOf,
} from './support.mjs';

const usage = `larkspur-mcp —— Larkspur 的 MCP server(stdio)

  --data-root <dir>   数据目录(默认 ~/Library/Application Support/Larkspur)

这个程序由支持 MCP 的 AI 客户端自动拉起,一般不需要手动运行。
手动调试:在终端里跑起来,然后粘一行 JSON-RPC,比如
  {"jsonrpc":"2.0","id":1,"method":"tools/list"}
`;

const commandLines = [
  { args: ['-h'], status: 0, stdout: usage, stderr: '' },
  { args: ['--help'], status: 0, stdout: usage, stderr: '' },
  { args: ['--data-root', 'a', '-h', '--wrong'], status: 0, stdout: usage, stderr: '' },
  { args: ['--data-root'], status: 2, stdout: '', stderr: '--data-root 少了一个值\n' },
  { args: ['-x', '--data-root', 'a'], status: 2, stdout: '', stderr: '不认识的参数:-x\n' },
  { args: ['中文', '-h'], status: 2, stdout: '', stderr: '不认识的参数:中文\n' },
];

for (const { args, status, stdout, stderr } of commandLines) {
  test(`the command line "${args.join(' ')}" ends with status ${status}`, async (t) => {
    const cwd = temporaryFolder(t);

    const end = await run(args, { cwd });

    assert.deepEqual(end, { status, signal: null, stdout, stderr });
    assert.ok(!existsSync(join(cwd, 'a')), 'no data root is made');
  });
}

test('the last data root wins and is taken literally', async (t) => {
  const cwd = temporaryFolder(t);

  const end = await run(['--data-root', 'first', '--data-root', '~/second'], { cwd });

  assert.equal(end.status, 0);
  assert.ok(existsSync(join(cwd, '~', 'second', 'mcp-access.log')));
  assert.ok(!existsSync(join(cwd, 'first')));
});

test('without a data root the one in the home directory is used', async (t) => {
  const home = temporaryFolder(t);

  const end = await run([], { env: { ...bareEnvironment(), HOME: home } });

  assert.equal(end.status, 0);
  assert.ok(existsSync(join(home, 'Library/Application Support/Larkspur/mcp-access.log')));
});

test('what the server creates is for the owner alone', async (t) => {
  const dataRoot = join(temporaryFolder(t), 'new', 'root');

  await run(['--data-root', dataRoot]);

  assert.equal(statSync(dataRoot).mode & 0o777, 0o700);
  assert.equal(statSync(join(dataRoot, 'mcp-access.log')).mode & 0o777, 0o600);
});

test('the end of input ends the server with status 0 and without a word', async (t) => {
  const end = await run(['--data-root', household()]);

  assert.deepEqual(end, { status: 0, signal: null, stdout: '', stderr: '' });
});

test('a last line without a line feed is answered before the end', async (t) => {
  const input = requestLines(['ping']).trimEnd();

  const end = await run(['--data-root', temporaryFolder(t)], { input });

  assert.equal(end.status, 0);
  assert.deepEqual(JSON.parse(end.stdout), { jsonrpc: '2.0', id: 1, result: {} });
});

test('a broken line is logged, not answered, and the next one is served', async (t) => {
  const input = `{"jsonrpc":\n[1,2]\n   \n\n${requestLines(['ping'])}`;

  const end = await run(['--data-root', temporaryFolder(t)], { input });

  assert.equal(end.status, 0);
  assert.deepEqual(JSON.parse(end.stdout), { jsonrpc: '2.0', id: 1, result: {} });
  assert.match(end.stderr, /^(\[[-\d]{10} [:\d]{8}\] ! 收到解不开的一行,忽略\n){2}$/);
});

test('standard output carries one JSON object a line, in the order of the requests', async (t) => {
  const call = (name, args) => ['tools/call', { name, arguments: args }];
  const input = requestLines(
    [
      'initialize',
      { protocolVersion: '2024-11-05', capabilities: {}, clientInfo: { name: 'raw' } },
    ],
    ['tools/list'],
    call('get_trend', { person: 'Ann', metric: 'steps' }),
    call('get_trend', { person: '小美', metric: 'sleep' }),
    call('get_trend', { person: 'nobody', metric: 'steps' }),
    call('get_weather', {}),
    ['foo/bar'],
    ['ping'],
  );

  const end = await run(['--data-root', household()], { input });

  assert.equal(end.status, 0);
  assert.equal(end.stderr, '');
  assert.ok(end.stdout.endsWith('\n'));
  const replies = end.stdout
    .trimEnd()
    .split('\n')
    .map((line) => JSON.parse(line));
  assert.ok(replies.every(({ jsonrpc }) => jsonrpc === '2.0'));
  assert.deepEqual(
    replies.map(({ id, error }) => [id, error?.code ?? 'result']),
    [
      [1, 'result'],
      [2, 'result'],
      [3, 'result'],
      [4, 'result'],
      [5, -32602],
      [6, -32601],
      [7, -32601],
      [8, 'result'],
    ],
  );
});

test('home, path and user are all the environment a conversation needs', async (t) => {
  const dataRoot = household();

  const { client, seen } = await connect(t, dataRoot, { env: bareEnvironment() });
  const { tools } = await client.listTools();
  const result = await client.callTool({
    name: 'get_trend',
    arguments: { person: 'Ann', metric: 'sleep', from: '2024-03-04', to: '2024-03-17' },
  });
  await client.close();

  assert.ok(tools.length > 0);
  // Without a word from the environment, the machine's own settings decide on the language.
  assert.match(textOf(result), /^(Member: Ann |成员:Ann)\(person=ann-01\)\n/);
  assert.equal(seen.stderr, '');
});

test('two servers on one data root lose no line of the access log', async (t) => {
  const dataRoot = newHousehold(t);
  const names = ['left', 'right'];
  const calls = 200;

  const clients = await Promise.all(names.map((name) => connect(t, dataRoot, { name })));
  const talk = async ({ client }) => {
    for (let call = 0; call < calls; ++call) {
      // The tool ignores an argument that it does not know; the log tells the calls apart by it.
      const args = { person: 'mei-03', metric: 'steps', call };
      await client.callTool({ name: 'get_trend', arguments: args });
    }
  };
  await Promise.all(clients.map(talk));

  const records = readFileSync(join(dataRoot, 'mcp-access.log'), 'utf8').split('\n');
  assert.equal(records.pop(), '', 'the log ends with a complete line');
  const messages = records.map((record) => {
    const match = /^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\] i (.*)$/.exec(record);
    assert.ok(match, `no whole record: ${record}`);
    return match[1];
  });
  for (const name of names) {
    const own = messages.filter((message) => message.split(/[ :]/).includes(name));
    const reads = Array.from(
      { length: calls },
      (_, call) => `${name} 读取 小美 · get_trend call=${call} metric=steps`,
    );
    assert.deepEqual(own, [`连接:${name}`, ...reads]);
  }
  assert.equal(messages.length, names.length * (calls + 1));
});
