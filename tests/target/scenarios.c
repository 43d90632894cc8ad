/* The calls of each room that are measured, each with what it needs and what it must have done. */
#include "scenarios.h"

#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>

#include "device.h"
#include "scene.h"

static char *g_document = NULL;

static void PrepareExchange(void) {
  ResetDevice(SceneDirectory());
  g_document = FullDocument();
}

static void RunExchange(void) {
  if (do_RssXml_Parser(g_document) != 1) {
    Stop("the document is refused");
  }
}

static void CheckExchange(void) {
  if (DeviceWrites() != 168 || rssXmlData.wlan[1].wlAcRuleNo != 40) {
    Stop("the exchange did less than it should");
  }
}

static const char *g_value = NULL;

static void PrepareVariable(void) {
  ResetDevice(SceneDirectory());
  init_RssVar();
  g_value = NULL;
}

static void RunVariableRead(void) { g_value = getRssVar("rss_Wl5_WirelessName"); }

static void CheckVariableRead(void) {
  if (g_value == NULL || strcmp(g_value, "HomeNet 5G") != 0) {
    Stop("the variable is not read");
  }
}

/* A batch sets, verifies and applies; it goes deeper than any other call of the interface. */
static char g_batch[128];
static int g_batch_result = -1;

static void PrepareVariableBatch(void) {
  PrepareVariable();
  snprintf(g_batch, sizeof(g_batch), "rss_DeviceName=Cellar;rss_Wl5_WirelessName=Cellar 5G");
}

static void RunVariableBatch(void) {
  char name[KIOAPP_VAR_SIZE];
  g_batch_result = do_RssVar_Parser(g_batch, ';', name, 1);
}

static void CheckVariableBatch(void) {
  if (g_batch_result != KIOAPP_RESULT_APPLIED ||
      strcmp(DeviceText("/lan/wireless5:1/wirelessname"), "Cellar 5G") != 0) {
    Stop("the batch is not applied");
  }
}

const struct Scenario kScenarios[] = {
    {"exchange", PrepareExchange, RunExchange, CheckExchange, 0},
    {"variable_read", PrepareVariable, RunVariableRead, CheckVariableRead, 0},
    {"variable_batch", PrepareVariableBatch, RunVariableBatch, CheckVariableBatch, 0},
};
const size_t kScenarioCount = sizeof(kScenarios) / sizeof(kScenarios[0]);
