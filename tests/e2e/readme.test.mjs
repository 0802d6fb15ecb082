// What README.md, in either language, tells a reader to copy and of the tools, taken from the files as
// they stand.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';

import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';

import { answer, bareEnvironment, examples, household, run, server } from './support.mjs';

const fileOf = (name) => readFileSync(new URL(`../../${name}`, import.meta.url), 'utf8');

for (const name of ['README.md', 'README.zh.md']) {
  const readme = fileOf(name);

  test(`${name} has a row for each tool`, () => {
    const names = examples.map(({ tool }) => tool);
    const rows = [...readme.matchAll(/^\| `(\w+)` \|/gm)].map(([, name]) => name);

    // Another table, of durations, names some of them again.
    assert.deepEqual([...new Set(rows)].filter((name) => names.includes(name)), names);
  });

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
