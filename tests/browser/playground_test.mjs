// The playground in a browser: results as one types, faults of dictionary and reading, a run that takes too long.
//
//     node playground_test.mjs PLAYGROUND_DIRECTORY
//
// CHROMIUM names the browser; without it, the one in the path.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { after, before, test } from "node:test";
import { chromium } from "playwright-core";

const address = pathToFileURL(path.resolve(process.argv[2], "index.html")).href;
const executablePath = process.env.CHROMIUM || execFileSync("sh", ["-c", "command -v chromium"]).toString().trim();
let browser, page, faults;

before(async () => {
  browser = await chromium.launch({ executablePath, args: ["--no-sandbox"] });
  page = await browser.newPage();
  faults = [];
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("request", (request) => {
    if (!/^(file|data|blob):/.test(request.url())) faults.push("a request for " + request.url());
  });
  await page.goto(address);
  await page.waitForFunction(() => /result/.test(document.querySelector("#count").textContent));
});

after(async () => {
  assert.deepEqual(faults, []);
  await browser.close();
});

const texts = () => page.locator("#results li").evaluateAll((items) => items.map((item) => item.dataset.text));

const dictionary = (content) => page.fill("#dictionary", typeof content === "string" ? content : JSON.stringify(content));

test("the example has a result at once", async () => {
  assert.deepEqual(await texts(), ["Plum"]);
});

test("every key changes the results", async () => {
  await page.fill("#reading", "");
  assert.deepEqual(await texts(), []);
  await page.locator("#reading").pressSequentially("modem");
  assert.deepEqual(await texts(), ["modern"]);
  await page.fill("#reading", "AB-12O4");
  assert.deepEqual(await texts(), ["AB-1204"]);
});

test("candidates count, and every position is explained", async () => {
  await dictionary({ lexicons: [{ words: ["Plum"] }] });
  await page.fill("#reading", '[[["P",98]],[["1",71],["l",64]],[["u",97]],[["m",88]]]');
  assert.deepEqual(await texts(), ["Plum"]);
  const cells = page.locator("#results li .cells").nth(1).locator(".cell");
  assert.deepEqual(await cells.evaluateAll((all) => all.map((cell) => cell.className)),
    ["cell primary", "cell secondary", "cell primary", "cell primary"]);
  assert.equal(await cells.nth(1).getAttribute("title"), "another candidate, or a swap");
});

test("faults are shown where they are", async () => {
  await dictionary('{"lexicons": [{"words": ["a", "a"]}]}');
  assert.match(await page.textContent("#trouble"), /lexicons\/0\/words\/1: duplicate/);
  assert.deepEqual(await texts(), []);
  await dictionary("{");
  assert.match(await page.textContent("#trouble"), /not JSON/);
  await dictionary({ lexicons: [{ words: ["a"] }] });
  await page.fill("#reading", "[[]]");
  assert.match(await page.textContent("#trouble"), /no candidate/);
  await page.fill("#reading", "a");
  assert.equal(await page.textContent("#trouble"), "");
  assert.deepEqual(await texts(), ["a"]);
});

test("characters beyond ASCII travel", async () => {
  await dictionary({ lexicons: [{ words: ["Äpfel", "東京"] }], parameters: { maxEdits: 1 } });
  await page.fill("#reading", "東京");
  assert.deepEqual(await texts(), ["東京"]);
  await page.fill("#reading", "Apfel");
  assert.deepEqual(await texts(), ["Äpfel"]);
});

test("markup is text", async () => {
  await dictionary({ lexicons: [{ words: ["<b>x</b>"] }] });
  await page.fill("#reading", "<b>x</b>");
  assert.deepEqual(await texts(), ["<b>x</b>"]);
  assert.equal(await page.locator("#results b").count(), 0);
});
