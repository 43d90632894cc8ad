#!/usr/bin/python3
"""pod.py [IMAGE [PORT]]: prints a Pod of the template in routers.yaml, the first of its set, for `podman play
kube`, which knows no StatefulSet. It has the network of the machine, and serves PORT (8080)."""

import pathlib
import sys

import yaml


def pod(image, port):
    """The Pod, and the claim of its volume, as documents."""
    documents = yaml.safe_load_all(pathlib.Path(__file__).with_name("routers.yaml").read_text())
    routers = next(one for one in documents if one["kind"] == "StatefulSet")
    name = routers["metadata"]["name"] + "-0"
    template = routers["spec"]["template"]
    spec = template["spec"]
    spec["hostNetwork"] = True
    spec["hostname"] = name
    spec["volumes"] = []
    claims = []
    for claim in routers["spec"]["volumeClaimTemplates"]:
        volume = claim["metadata"]["name"]
        claims.append({"apiVersion": "v1", "kind": "PersistentVolumeClaim",
                       "metadata": {"name": f"{volume}-{name}"}, "spec": claim["spec"]})
        spec["volumes"].append({"name": volume, "persistentVolumeClaim": {"claimName": f"{volume}-{name}"}})
    for container in spec["containers"]:
        container["image"] = image or container["image"]
        for variable in container["env"]:
            # A reference to a variable is not put in by podman.
            if "valueFrom" in variable:
                variable["value"] = name
                del variable["valueFrom"]
            variable["value"] = variable["value"].replace("$(POD_NAME)", name)
            if variable["name"] == "KIO_PORT":
                variable["value"] = str(port)
        # Podman publishes no port of the machine's own network, and knows none by name.
        del container["ports"]
        for probe in ("readinessProbe", "livenessProbe"):
            container[probe]["httpGet"]["port"] = port
    return claims + [{"apiVersion": "v1", "kind": "Pod", "metadata": {"name": name, **template["metadata"]}, "spec": spec}]


if __name__ == "__main__":
    print(yaml.safe_dump_all(pod(sys.argv[1] if len(sys.argv) > 1 else "", int(sys.argv[2]) if len(sys.argv) > 2 else 8080)))
