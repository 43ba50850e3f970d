// The page: runs the reading whenever something is typed, and shows the results position by position.

"use strict";

const meanings = {
  primary: "the first candidate",
  primarySwap: "swapped for the first candidate",
  secondary: "another candidate, or a swap",
  secondarySwap: "swapped for another candidate",
  substituted: "substituted",
  substitutedSpace: "substituted by a space",
  noMatch: "nothing fits",
  inserted: "inserted: the reading lacks it",
  deleted: "left out",
  deletedIgnored: "ignored",
};

const byId = (id) => document.getElementById(id);

/** The primary candidates of what stands in the field. */
function readingCharacters(text) {
  if (!text.startsWith("[")) return [...text];
  try {
    return JSON.parse(text).map((candidates) => candidates[0][0]);
  } catch {
    return [];
  }
}

function cells(characters, statuses) {
  const row = document.createElement("div");
  row.className = "cells";
  for (let i = 0; i < Math.max(characters.length, statuses.length); ++i) {
    const cell = document.createElement("span");
    cell.className = "cell " + (statuses[i] ?? "");
    cell.title = meanings[statuses[i]] ?? "";
    cell.textContent = characters[i] || "·";
    row.append(cell);
  }
  return row;
}

function describe(result, reading) {
  const item = document.createElement("li");
  const meaning = document.createElement("div");
  meaning.className = "meaning";
  const kinds = { lexicon: "a word", fielding: "a shape", regularExpression: "an expression" };
  meaning.textContent = `${kinds[result.mode] ?? result.mode}, ${result.edits} ${result.edits === 1 ? "edit" : "edits"}`;
  item.append(cells(reading, result.readingStatuses), cells(result.characters, result.statuses), meaning);
  item.dataset.text = result.characters.join("");
  return item;
}

function show(run) {
  const text = byId("reading").value;
  const answer = JSON.parse(run(byId("dictionary").value, text));
  byId("trouble").textContent = answer.error ?? "";
  const results = answer.results ?? [];
  byId("count").textContent = answer.error ? "" : results.length === 1 ? "1 result" : `${results.length} results`;
  byId("results").replaceChildren(...results.map((result) => describe(result, readingCharacters(text))));
}

createQoc().then((module) => {
  const run = module.cwrap("qoc_playground_run", "string", ["string", "string"]);
  for (const id of ["dictionary", "reading"]) byId(id).addEventListener("input", () => show(run));
  show(run);
}, (problem) => {
  byId("trouble").textContent = `The library could not be loaded: ${problem}`;
});
