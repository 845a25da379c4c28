// The string ids of the layer state commands in the resource library
// "KvExtendRes.dll": prompts, keyword lists and messages. The texts live in the
// library; only the keyword lists carry a built-in fallback in the code.
#pragma once

#include "kcwindows.h"

namespace LayerResourceIds {

constexpr UINT kLayCur1Prompt = 2194;          // LAYCUR1: select an object whose layer becomes current
constexpr UINT kYesNoKeywords = 2209;          // yes/no keyword list
constexpr UINT kLockedLayer = 2244;            // LAYLCK: per-layer message, then " " and the name
constexpr UINT kLockedSummary = 2245;          // LAYLCK: summary heading, names appended after " "
constexpr UINT kLockPickPrompt = 2246;         // LAYLCK pick prompt
constexpr UINT kUnlockPickPrompt = 2247;       // LAYULK pick prompt
constexpr UINT kUnlockedLayer = 2248;          // LAYULK result, %s layer
constexpr UINT kNothingSelected = 2249;        // a pick that missed or picked nothing
constexpr UINT kMatchPickPrompt = 2250;        // LAYMCH: object on the destination layer
constexpr UINT kMatchSelectPrompt = 2251;      // LAYMCH: objects to change (printed)
constexpr UINT kMatchResult = 2252;            // LAYMCH result, %d count, %s layer
constexpr UINT kLayOffKeywords = 2254;         // LAYOFF pick keywords: Options, eXit
constexpr UINT kNestingKeywords = 2255;        // LAYOFF options keywords: Entity, Block, None
constexpr UINT kLayOffPickPrompt = 2256;       // LAYOFF pick prompt
constexpr UINT kNestingPromptNone = 2257;      // options prompt, current mode None
constexpr UINT kNestingPromptBlock = 2258;     // options prompt, current mode Block
constexpr UINT kNestingPromptEntity = 2259;    // options prompt, current mode Entity
constexpr UINT kCurrentLayerOffQuestion = 2260;  // %s layer: turn the current layer off?
constexpr UINT kLayerTurnedOff = 2261;         // %s layer
constexpr UINT kLayCurSelectPrompt = 2262;     // LAYCUR selection prompt (printed)
constexpr UINT kLayCurResult = 2263;           // %d count, %s current layer
constexpr UINT kAllLayersThawed = 3563;        // LAYTHW done
constexpr UINT kAllLayersOn = 6197;            // LAYON done

}  // namespace LayerResourceIds
