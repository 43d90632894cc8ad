"""The manifests hold together, and the Pod that is tried is the one of the template."""

import pathlib
import sys
import unittest

import yaml

SOURCE = pathlib.Path(sys.argv.pop(1))
sys.path.insert(0, str(SOURCE / "packaging/kubernetes"))
import pod  # noqa: E402


class Manifests(unittest.TestCase):
    def setUp(self):
        text = (SOURCE / "packaging/kubernetes/routers.yaml").read_text()
        self.service, self.routers = yaml.safe_load_all(text)
        self.template = self.routers["spec"]["template"]

    def test_the_service_finds_the_routers(self):
        self.assertEqual((self.service["kind"], self.service["spec"]["clusterIP"]), ("Service", "None"))
        self.assertEqual(self.routers["spec"]["serviceName"], self.service["metadata"]["name"])
        labels = self.template["metadata"]["labels"]
        self.assertEqual(self.service["spec"]["selector"], labels)
        self.assertEqual(self.routers["spec"]["selector"]["matchLabels"], labels)
        container, = self.template["spec"]["containers"]
        names = {port["name"]: port["containerPort"] for port in container["ports"]}
        environment = {one["name"]: one.get("value") for one in container["env"]}
        for port in self.service["spec"]["ports"]:
            self.assertEqual(str(names[port["targetPort"]]), environment["KIO_PORT"])
        for probe in ("readinessProbe", "livenessProbe"):
            self.assertEqual(container[probe]["httpGet"], {"path": "/device", "port": "http"})

    def test_a_router_may_write_to_its_volume_alone(self):
        container, = self.template["spec"]["containers"]
        self.assertTrue(container["securityContext"]["readOnlyRootFilesystem"])
        self.assertEqual(container["securityContext"]["capabilities"], {"drop": ["ALL"]})
        self.assertTrue(self.template["spec"]["securityContext"]["runAsNonRoot"])
        recipe = (SOURCE / "packaging/oci/Containerfile").read_text()
        user = self.template["spec"]["securityContext"]["runAsUser"]
        self.assertIn(f"\nUSER {user}:{user}\n", recipe)
        mount, = container["volumeMounts"]
        claim, = self.routers["spec"]["volumeClaimTemplates"]
        self.assertEqual(mount, {"name": claim["metadata"]["name"], "mountPath": "/data"})
        self.assertIn(f"\nVOLUME {mount['mountPath']}\n", recipe)

    def test_the_pod_is_one_of_the_template(self):
        claim, made = pod.pod("", 8080)
        spec, wanted = made["spec"], self.template["spec"]
        self.assertEqual(spec.pop("hostname"), "routers-0")
        self.assertTrue(spec.pop("hostNetwork"))
        volume, = spec.pop("volumes")
        self.assertEqual(volume["persistentVolumeClaim"]["claimName"], claim["metadata"]["name"])
        self.assertEqual(claim["spec"], self.routers["spec"]["volumeClaimTemplates"][0]["spec"])
        self.assertEqual([one["containerPort"] for one in wanted["containers"][0].pop("ports")], [8080])
        for probe in ("readinessProbe", "livenessProbe"):
            self.assertEqual(spec["containers"][0][probe]["httpGet"].pop("port"), 8080)
            self.assertEqual(wanted["containers"][0][probe]["httpGet"].pop("port"), "http")
        for container in (spec["containers"][0], wanted["containers"][0]):
            names = [one["name"] for one in container.pop("env")]
            self.assertEqual(names, ["POD_NAME", "KIO_NAMES", "KIO_PORT"])
        self.assertEqual(spec, wanted)
        self.assertEqual(made["metadata"]["labels"], self.template["metadata"]["labels"])


if __name__ == "__main__":
    unittest.main()
