// The built server, asked by the Inspector's command line: the second client, made by others.

import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import { delimiter, dirname } from 'node:path';
import { describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';

import { chinese, environment, examples, household, membersOf, server, textOf } from './support.mjs';

const inspector = fileURLToPath(
  new URL('node_modules/@modelcontextprotocol/inspector-cli/build/cli.js', import.meta.url),
);

/**
 * What the Inspector says about one request to the server. It hands the server its own environment.
 * @returns {Promise<{status: number, stdout: string, stderr: string}>}
 */
function inspect(args, env = environment()) {
  const command = [inspector, '--cli', server, '--data-root', household(), ...args];
  // The Inspector starts a second Node by its name; it has to be the same one.
  const path = [dirname(process.execPath), env.PATH].join(delimiter);
  return new Promise((resolve) => {
    execFile(process.execPath, command, { env: { ...env, PATH: path } }, (error, stdout, stderr) =>
      resolve({ status: error ? error.code : 0, stdout, stderr }),
    );
  });
}

/** The result that the Inspector prints. Fails when it prints anything else. */
async function resultOf(args, env) {
  const { status, stdout, stderr } = await inspect(args, env);
  assert.equal(stderr, '');
  assert.equal(status, 0);
  return JSON.parse(stdout);
}

const toolCall = (name, ...pairs) => {
  const args = pairs.length > 0 ? ['--tool-arg', ...pairs] : [];
  return ['--method', 'tools/call', '--tool-name', name, ...args];
};

// Each request starts two Nodes and a server, so two of them share the time.
describe('the Inspector', { concurrency: 2 }, () => {
  test('lists the tools', async () => {
    const { tools } = await resultOf(['--method', 'tools/list']);

    assert.deepEqual(
      tools.map(({ name }) => name),
      examples.map(({ tool }) => tool),
    );
  });

  test('calls a tool without arguments', async () => {
    const text = textOf(await resultOf(toolCall('list_persons')));

    const [{ records }] = membersOf(household());
    assert.ok(
      text.startsWith(`· Ann (person=ann-01): ${records.toLocaleString('en-US')} records, `),
    );
  });

  test('calls a tool with texts and an integer', async () => {
    const range = ['from=2024-01-01', 'to=2024-03-31'];
    const call = toolCall('get_workouts', 'person=Ann', ...range, 'limit=2', 'format=json');

    const { person, pagination, workouts } = JSON.parse(textOf(await resultOf(call)));

    assert.equal(person, 'Ann');
    assert.deepEqual([pagination.limit, pagination.returned_count], [2, 2]);
    assert.equal(workouts.length, 2);
  });

  test('calls a tool in Chinese', async () => {
    const call = toolCall('get_day', 'person=小美', 'date=2024-03-13');

    const text = textOf(await resultOf(call, chinese));

    assert.match(text, /^成员:小美\(person=mei-03\)\n日期:2024-03-13\n这一天没有任何记录。\n/);
  });

  test('lists the resources', async () => {
    const { resources } = await resultOf(['--method', 'resources/list']);

    assert.deepEqual(
      resources.map(({ uri, name }) => [uri, name]),
      membersOf(household()).map(({ id, name }) => [
        `larkspur://${id}/overview`,
        `${name}'s health overview`,
      ]),
    );
  });

  test('reads a resource', async () => {
    const uri = 'larkspur://ben-02/overview';

    const { contents } = await resultOf(['--method', 'resources/read', '--uri', uri]);

    assert.equal(contents.length, 1);
    assert.deepEqual([contents[0].uri, contents[0].mimeType], [uri, 'text/plain']);
    assert.match(contents[0].text, /^\[Data coverage\]\nRange:/);
    assert.match(contents[0].text, /^· Body$/m);
  });

  test('lists the prompts', async () => {
    const { prompts } = await resultOf(['--method', 'prompts/list']);

    assert.deepEqual(
      prompts.map(({ name }) => name),
      ['how_am_i', 'sleep_and_exercise', 'doctor_questions'],
    );
  });

  test('gets a prompt', async () => {
    const request = ['--method', 'prompts/get', '--prompt-name', 'doctor_questions'];

    const { messages } = await resultOf(request);

    assert.equal(messages.length, 1);
    assert.equal(messages[0].role, 'user');
    assert.match(messages[0].content.text, /^Read get_overview, then list five questions /);
  });

  const refusals = [
    {
      name: 'an argument',
      args: toolCall('get_workouts', 'person=Ann', 'limit=0'),
      error: 'MCP error -32602: limit must be an integer in 1...200',
    },
    {
      name: 'a tool',
      args: toolCall('get_weather'),
      error: 'MCP error -32601: 没有这个工具:get_weather',
    },
  ];

  // The words, not only the status: other versions of the Inspector end with 0 on a tool's error.
  for (const { name, args, error } of refusals) {
    test(`reports that ${name} is refused`, async () => {
      const { status, stdout, stderr } = await inspect(args);

      assert.equal(stdout, '');
      assert.ok(stderr.includes(error), stderr);
      assert.notEqual(status, 0);
    });
  }
});
