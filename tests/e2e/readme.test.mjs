// What README.md, in either language, tells a reader to copy and what the client bundle names, taken
// from the files as they stand.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';

import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';

import { answer, bareEnvironment, connect, household, run, server } from './support.mjs';

const fileOf = (name) => readFileSync(new URL(`../../${name}`, import.meta.url), 'utf8');

test('the client bundle names every tool', async (t) => {
  const { client } = await connect(t, household());

  const { tools } = await client.listTools();

  const named = JSON.parse(fileOf('packaging/bundle/manifest.json.in')).tools;
  assert.deepEqual(
    named.map(({ name }) => name),
    tools.map(({ name }) => name),
  );
});

for (const name of ['README.md', 'README.zh.md']) {
  const readme = fileOf(name);

  test(`${name} configures a client`, async (t) => {
    const blocks = [...readme.matchAll(/^```json\n(.*?)^```/gms)].map(([, text]) => JSON.parse(text));
    const { mcpServers } = blocks.find((block) => 'mcpServers' in block);
    const [entry] = Object.values(mcpServers);
    const [option, dataRoot, ...others] = entry.args;
    assert.match(entry.command, /^\/.*\/larkspur-mcp$/);
    assert.match(dataRoot, /^\//);
    assert.deepEqual(others, []);

    // The reader puts paths of their own in the place of these.
    const transport = new StdioClientTransport({
      ...entry,
      command: server,
      args: [option, household()],
      env: bareEnvironment(),
    });
    const client = new Client({ name: 'reader', version: '1.0.0' });
    t.after(() => client.close());
    await client.connect(transport);

    assert.match(await answer(client, 'list_persons'), /Ann/);
  });

  test(`${name} has a line to paste that is answered in one`, async () => {
    const [, line] = /`(\{"jsonrpc".*?\})`/.exec(readme);

    const { stdout } = await run(['--data-root', household()], { input: `${line}\n` });

    assert.equal(stdout.trim().split('\n').length, 1);
    assert.ok(JSON.parse(stdout).result.tools.length > 0);
  });
}
