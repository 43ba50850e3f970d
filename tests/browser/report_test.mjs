// The report in a browser: filters, counts, candidates under the pointer, keyboard, light and dark, many readings.
//
//     node report_test.mjs PROGRAM DATA_DIRECTORY OUTPUT_DIRECTORY
//
// CHROMIUM names the browser; without it, the one in the path.

import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { after, before, test } from "node:test";
import { chromium } from "playwright-core";

const [program, data, directory] = process.argv.slice(2).map((argument) => path.resolve(argument));
const executablePath = process.env.CHROMIUM || execFileSync("sh", ["-c", "command -v chromium"]).toString().trim();
let browser;

const readings = readFileSync(path.join(data, "readings.ndjson"), "utf8").trim().split("\n").map((line) => JSON.parse(line));

/** Writes a report of the shipped readings, or of others; gives its address. */
function report(name, lines, dictionary, ...options) {
  const input = path.join(directory, name + ".ndjson"), output = path.join(directory, name + ".html");
  const dictionaryPath = path.join(directory, name + ".json");
  writeFileSync(input, lines.map((line) => JSON.stringify(line) + "\n").join(""));
  writeFileSync(dictionaryPath, JSON.stringify(dictionary));
  const done = spawnSync(program, ["report", "-d", dictionaryPath, "-o", output, ...options, input]);
  assert.ok(done.status === 0 || done.status === 1, done.stderr.toString());
  return pathToFileURL(output).href;
}

const words = { lexicons: [{ file: path.join(data, "words.txt") }], parameters: { maxEdits: 1 } };

/** A page that has opened the address; requests to anywhere else and errors are faults. */
async function open(address, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
  const page = await context.newPage();
  const faults = [];
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("console", (message) => message.type() === "error" && faults.push(message.text()));
  page.on("request", (request) => {
    if (request.url() !== address && !request.url().startsWith("blob:")) faults.push("a request for " + request.url());
  });
  await page.goto(address);
  return { page, faults };
}

const count = async (page) => Number((await page.locator("#count").textContent()).split(" ")[0]);

/** Goes through the whole list and counts the rows that it has shown. */
async function rowsShown(page) {
  return page.evaluate(async () => {
    const seen = new Set();
    scrollTo(0, 0);
    for (;;) {
      await new Promise((done) => setTimeout(done, 60));
      document.querySelectorAll(".row").forEach((row) => seen.add(row.dataset.index));
      if (scrollY + innerHeight >= document.documentElement.scrollHeight - 1) break;
      scrollBy(0, innerHeight);
    }
    scrollTo(0, 0);
    return seen.size;
  });
}

before(async () => {
  mkdirSync(directory, { recursive: true });
  browser = await chromium.launch({ executablePath, args: ["--no-sandbox"] });
});
after(async () => browser && (await browser.close()));

test("the shipped readings", async () => {
  const address = report("shipped", readings, words, "--images", path.join(data, "images"));
  const { page, faults } = await open(address);
  const answers = spawnSync(program, ["run", "--json", "-d", path.join(directory, "shipped.json"),
    path.join(directory, "shipped.ndjson")], { maxBuffer: 1 << 30 }).stdout.toString().trim().split("\n").map((line) => JSON.parse(line));
  const best = (answer) => answer.resolved.text;
  const isChanged = (answer) => answer.results.length > 0 && best(answer) !== answer.text;

  assert.equal(await count(page), readings.length);
  assert.equal(await rowsShown(page), readings.length);
  await page.screenshot({ path: path.join(directory, "all.png") });

  await page.getByRole("button", { name: "No result" }).click();
  assert.equal(await count(page), answers.filter((answer) => answer.results.length === 0).length);
  await page.getByRole("button", { name: "Changed" }).click();
  const numChanged = answers.filter(isChanged).length;
  assert.ok(numChanged > 0);
  assert.equal(await count(page), numChanged);
  assert.equal(await rowsShown(page), numChanged);
  assert.equal(await page.getByRole("button", { name: "Changed" }).getAttribute("aria-pressed"), "true");
  assert.equal(await page.getByRole("button", { name: "All" }).getAttribute("aria-pressed"), "false");

  const right = readings.filter((reading, index) =>
    answers[index].results.length > 0 && best(answers[index]) === reading.truth).length;
  await page.getByRole("button", { name: "Right", exact: true }).click();
  assert.equal(await count(page), right);
  const cells = await page.locator("#kinds tbody tr").last().locator("td").allTextContents();
  assert.equal(Number(cells[0]), readings.length);
  assert.equal(parseInt(cells[4]), readings.filter((reading) => reading.text === reading.truth).length);
  assert.equal(parseInt(cells[5]), right);
  assert.equal(await page.locator("#kinds tbody tr").count(), new Set(readings.map((reading) => reading.kind)).size + 1);

  const times = (await page.locator("#confusions tbody tr td:last-child").allTextContents()).map(Number);
  assert.ok(times.length > 3);
  assert.deepEqual(times, [...times].sort((a, b) => b - a));

  // The search finds one, with its picture and its candidates.
  await page.getByRole("button", { name: "All" }).click();
  await page.keyboard.press("/");
  await page.keyboard.type("r0203");
  assert.equal(await count(page), 1);
  const row = page.locator(".row");
  await row.locator("img").evaluate((image) => image.decode());
  assert.ok(await row.locator("img").evaluate((image) => image.naturalWidth > 0));
  const reading = readings.find((candidate) => candidate.id === "r0203");
  const tip = page.locator("#tip");
  assert.ok(await tip.isHidden());
  await row.locator(".x i").nth(1).hover();
  assert.ok(await tip.isVisible());
  const shown = await tip.locator("tr").allTextContents();
  assert.deepEqual(shown, reading.positions[1].map(([character, score]) => character + score));
  await page.screenshot({ path: path.join(directory, "candidates.png") });
  await page.mouse.move(2, 2);
  await row.locator(".x i").last().hover();
  assert.ok((await tip.textContent()).length > 0);
  await page.locator("#search").blur(); // There the key would clear the search.
  await page.keyboard.press("Escape");
  assert.ok(await tip.isHidden());
  assert.deepEqual(faults, []);
});

test("the keyboard goes from reading to reading and from position to position", async () => {
  const { page, faults } = await open(report("keyboard", readings.slice(0, 120), words));
  await page.getByRole("button", { name: "All" }).focus();
  await page.keyboard.press("ArrowDown");
  const focused = () => page.evaluate(() => document.activeElement.closest(".row")?.dataset.index ?? null);
  assert.equal(await focused(), "0");
  for (let i = 0; i < 60; ++i) await page.keyboard.press("j");
  assert.equal(await focused(), "60");
  await page.keyboard.press("k");
  assert.equal(await focused(), "59");
  await page.keyboard.press("ArrowRight");
  assert.ok(await page.locator("#tip").isVisible());
  const first = await page.locator("#tip").textContent();
  await page.keyboard.press("ArrowRight");
  assert.notEqual(await page.locator("#tip").textContent(), first);
  assert.deepEqual(faults, []);
});

test("narrow leads, and readings without truth", async () => {
  const scored = (text) => [...text].map((character) => [[character, 95]]);
  const lines = [{ id: "narrow", positions: scored("cot") }, { id: "clear", positions: scored("dog") },
    { id: "none", positions: scored("xyzzy") }];
  const { page, faults } = await open(report("narrow", lines, { lexicons: [{ words: ["cat", "cut", "dog"] }], parameters: { maxEdits: 1 } }));
  await page.getByRole("button", { name: "Narrow lead" }).click();
  assert.equal(await page.locator(".row").count(), 1);
  assert.match(await page.locator(".row").textContent(), /narrow/);
  assert.equal(await page.getByRole("button", { name: "Right" }).count(), 0);
  await page.getByRole("button", { name: "No result" }).click();
  assert.deepEqual(await page.locator(".row .name").allTextContents(), [expectName("none", 3)]);
  assert.deepEqual(faults, []);
  function expectName(name, line) { return name + path.join(directory, "narrow.ndjson") + ":" + line; }
});

test("what readings hold is shown and never obeyed", async () => {
  const evil = "</script><script>document.title='x'</script><img src=x onerror=document.title='x'>\"'&<b>";
  const lines = [{ id: evil, text: evil, kind: evil, truth: evil }, { id: "tab", text: "a\tb\nc" }];
  const { page, faults } = await open(report("evil", lines, { lexicons: [{ words: [evil.slice(1), "a\tb\ncd"] }], parameters: { maxEdits: 1 } },
    "--title", "<b>T & t"));
  assert.equal(await page.title(), "<b>T & t");
  assert.equal(await count(page), 2);
  assert.equal(await page.locator(".row").count(), 2);
  assert.equal(await page.locator(".row .x b").first().textContent(), "<");
  assert.ok((await page.locator(".row .name").first().textContent()).startsWith(evil));
  await page.locator("#search").fill(evil.slice(0, 20));
  assert.equal(await count(page), 1);
  assert.deepEqual(faults, []);
});

test("light and dark", async () => {
  const address = report("scheme", readings.slice(0, 40), words);
  const luminance = (page) => page.evaluate(() => {
    const [r, g, b] = getComputedStyle(document.body).backgroundColor.match(/\d+/g).map(Number);
    return (r + g + b) / 3;
  });
  const light = await open(address, { colorScheme: "light" }), dark = await open(address, { colorScheme: "dark" });
  assert.ok(await luminance(light.page) > 200);
  assert.ok(await luminance(dark.page) < 60);
  await dark.page.screenshot({ path: path.join(directory, "dark.png") });
  await dark.page.getByRole("button", { name: "Light / dark" }).click();
  assert.ok(await luminance(dark.page) > 200);
  // Statuses differ by their marks, without colour.
  const marks = await light.page.locator(".row .x u").allTextContents();
  assert.ok(new Set(marks).size > 2);
  assert.deepEqual([...light.faults, ...dark.faults], []);
});

test("ten thousand readings", async () => {
  const many = Array.from({ length: 10000 }, (_, i) => ({ ...readings[i % readings.length], id: "n" + i }));
  const address = report("many", many, words, "--jobs", "2");
  const start = Date.now();
  const { page, faults } = await open(address);
  await page.locator(".row").first().waitFor();
  const opened = Date.now() - start;
  const elements = await page.evaluate(() => document.querySelectorAll("*").length);
  const clicked = Date.now();
  await page.getByRole("button", { name: "No result" }).click();
  const filtered = await count(page);
  const filterTime = Date.now() - clicked;
  console.log(`10,000 readings: opened in ${opened} ms, filtered in ${filterTime} ms, ${elements} elements`);
  assert.ok(filtered > 0 && filtered < 10000);
  assert.ok(elements < 20000, `${elements} elements stand in the page at once`);
  assert.ok(opened < 10000 && filterTime < 3000, "the page is slow");
  await page.getByRole("button", { name: "All" }).click();
  await page.evaluate(() => scrollTo(0, document.documentElement.scrollHeight));
  await page.locator('.row[data-index="9999"]').waitFor({ timeout: 10000 });
  await page.locator("#search").fill("n9998");
  assert.equal(await page.locator(".row").count(), 1);
  assert.deepEqual(faults, []);
});

test("a narrow window", async () => {
  const { page, faults } = await open(report("phone", readings.slice(0, 60), words), { viewport: { width: 390, height: 800 } });
  await page.screenshot({ path: path.join(directory, "phone.png") });
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth + 1), "the page is too wide");
  assert.deepEqual(faults, []);
});
